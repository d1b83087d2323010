#include "names.h"

#include "system.h"

#include "platform/text.h"
#include "store/favorite_files.h"
#include "store/rules.h"

#include <algorithm>
#include <string_view>

namespace pmx::tool {

namespace {

constexpr char NumberMark = '-';

std::string WithEnd(const std::string& name, const std::string& end) {
    const std::size_t room = NameLimit - std::min(end.size(), NameLimit);
    return name.substr(0, LengthWithin(name, room, SystemLeadBytes())) + end;
}

bool IsListable(std::string_view character) {
    const bool isControl = character.size() == 1 && character.front() >= '\0' && character.front() < ' ';
    return character.front() != FieldSeparator && !isControl && IsAllCharacters(character);
}

} // namespace

std::string NameKey(const std::string& name) {
    return FoldedName(name, LeadBytesIn(name));
}

std::string FreeName(const std::string& name, int& number,
                     const std::function<bool(const std::string&)>& isTaken) {
    for (;;) {
        std::string candidate = WithEnd(name, NumberMark + std::to_string(number++));
        if (!isTaken(candidate)) {
            return candidate;
        }
    }
}

std::string NameFromFile(const std::string& nameInside) {
    const std::string trimmed = TrimmedName(nameInside);
    std::string name;
    for (std::size_t position = 0; position < trimmed.size();) {
        const std::size_t length = CharacterLength(trimmed, position, SystemLeadBytes());
        const std::string character = trimmed.substr(position, length);
        name += IsListable(character) ? character : "-";
        position += length;
    }
    return TrimmedName(name.substr(0, LengthWithin(name, NameLimit, SystemLeadBytes())));
}

bool IsNameFromFile(const std::string& name, const std::string& nameInside) {
    const std::string given = NameFromFile(nameInside);
    if (NameKey(name) == NameKey(nameInside) || NameKey(name) == NameKey(given)) {
        return true;
    }
    const std::size_t mark = name.rfind(NumberMark);
    const std::string end = mark == std::string::npos ? std::string() : name.substr(mark);
    const bool isNumber =
        end.size() > 1 && end[1] != '0' && end.find_first_not_of("0123456789", 1) == std::string::npos;
    return isNumber && (NameKey(name) == NameKey(WithEnd(given, end)) ||
                        NameKey(name) == NameKey(WithEnd(nameInside, end)));
}

} // namespace pmx::tool
