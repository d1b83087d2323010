# Writes a C++ source that holds the bytes of a file: cmake -DINPUT=... -DOUTPUT=... -DFUNCTION=... -P EmbedFile.cmake
file(READ ${INPUT} bytes HEX)
string(REGEX REPLACE "(................................)" "\\1\n" bytes "${bytes}")
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
file(WRITE ${OUTPUT} "#include \"res/embedded_resources.h\"

namespace pmx {

namespace {

constexpr unsigned char Bytes[] = {
${bytes}
};

} // namespace

std::span<const std::byte> ${FUNCTION}() noexcept {
    return std::as_bytes(std::span(Bytes));
}

} // namespace pmx
")
