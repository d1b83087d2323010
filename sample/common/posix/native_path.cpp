#include "common/posix/native_path.h"

#include <algorithm>
#include <memory>
#include <type_traits>

#include <iconv.h>

namespace pmx::sample {

namespace {

struct Closer {
    void operator()(iconv_t converter) const { iconv_close(converter); }
};
using Converter = std::unique_ptr<std::remove_pointer_t<iconv_t>, Closer>;

} // namespace

std::string NativePath(std::string_view path) {
    const iconv_t opened = iconv_open("UTF-8", "CP932");
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the system's own value for failure
    if (opened == reinterpret_cast<iconv_t>(-1)) {
        return {};
    }
    const Converter converter(opened);
    std::string source(path);
    std::string result(source.size() * 3,
                       '\0'); // Three bytes of UTF-8 for each byte are the most that can be needed.
    char* from = source.data();
    char* to = result.data();
    std::size_t left = source.size();
    std::size_t room = result.size();
    if (iconv(converter.get(), &from, &left, &to, &room) == static_cast<std::size_t>(-1)) {
        return {};
    }
    result.resize(result.size() - room);
    // No byte of a longer UTF-8 character has the value of a backslash, so this touches separators only.
    std::replace(result.begin(), result.end(), '\\', '/');
    return result;
}

} // namespace pmx::sample
