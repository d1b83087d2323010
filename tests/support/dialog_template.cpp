#include "support/dialog_template.h"

#include "support/sjis.h"

#include <array>
#include <stdexcept>
#include <string_view>

namespace pmx::test {

namespace {

/// Texts of templates contain no characters beyond the basic plane.
std::u8string Utf8Of(std::u16string_view text) {
    std::u8string result;
    for (const char16_t unit : text) {
        if (unit < 0x80) {
            result += static_cast<char8_t>(unit);
        } else if (unit < 0x800) {
            result += static_cast<char8_t>(0xC0 | (unit >> 6));
            result += static_cast<char8_t>(0x80 | (unit & 0x3F));
        } else {
            result += static_cast<char8_t>(0xE0 | (unit >> 12));
            result += static_cast<char8_t>(0x80 | ((unit >> 6) & 0x3F));
            result += static_cast<char8_t>(0x80 | (unit & 0x3F));
        }
    }
    return result;
}

std::string InCapitals(std::string text) {
    for (char& letter : text) {
        letter = letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    }
    return text;
}

class Reader {
public:
    explicit Reader(std::span<const std::byte> bytes) : Bytes(bytes) {}

    std::uint16_t Word() {
        if (Position + 2 > Bytes.size()) {
            throw std::runtime_error("dialog template is cut off");
        }
        const auto low = std::to_integer<unsigned>(Bytes[Position]);
        const auto high = std::to_integer<unsigned>(Bytes[Position + 1]);
        Position += 2;
        return static_cast<std::uint16_t>(low | (high << 8));
    }

    std::uint32_t Long() {
        const std::uint32_t low = Word();
        return low | (static_cast<std::uint32_t>(Word()) << 16);
    }

    int Short() { return static_cast<std::int16_t>(Word()); }

    std::string Text(std::uint16_t first) {
        std::u16string text;
        for (std::uint16_t unit = first; unit != 0; unit = Word()) {
            text += static_cast<char16_t>(unit);
        }
        return Sjis(Utf8Of(text));
    }

    std::string Text() { return Text(Word()); }

    /// A text, or the number of a resource, which is skipped.
    std::string TextOrNumber() {
        const std::uint16_t first = Word();
        if (first == 0xFFFF) {
            Word();
            return {};
        }
        return Text(first);
    }

    std::string ClassName() {
        static constexpr std::array<std::string_view, 6> Known{"BUTTON",  "EDIT",      "STATIC",
                                                               "LISTBOX", "SCROLLBAR", "COMBOBOX"};
        const std::uint16_t first = Word();
        if (first != 0xFFFF) {
            return InCapitals(Text(first));
        }
        const std::size_t number = Word() - std::size_t{0x80};
        return number < Known.size() ? std::string(Known[number]) : std::string();
    }

    void Skip(std::size_t count) { Position += count; }
    void AlignToLong() { Position = (Position + 3) & ~std::size_t{3}; }

private:
    std::span<const std::byte> Bytes;
    std::size_t Position = 0;
};

ControlKind ButtonKind(std::uint32_t style) {
    constexpr std::uint32_t DefaultPush = 1;
    constexpr std::uint32_t Radio = 4;
    constexpr std::uint32_t AutoRadio = 9;
    const std::uint32_t type = style & 0xFU;
    if (type <= DefaultPush) {
        return ControlKind::PushButton;
    }
    return type == Radio || type == AutoRadio ? ControlKind::RadioButton : ControlKind::Other;
}

ControlKind KindOf(const TemplateControl& control) {
    constexpr std::uint32_t IconStatic = 3;
    if (control.ClassName == "BUTTON") {
        return ButtonKind(control.Style);
    }
    if (control.ClassName == "EDIT") {
        return ControlKind::Edit;
    }
    if (control.ClassName == "STATIC") {
        return (control.Style & 0x1FU) == IconStatic ? ControlKind::IconBox : ControlKind::Label;
    }
    return control.ClassName == "SYSLISTVIEW32" ? ControlKind::List : ControlKind::Other;
}

TemplateControl ReadControl(Reader& reader) {
    TemplateControl control;
    reader.AlignToLong();
    reader.Long(); // help id
    control.ExtendedStyle = reader.Long();
    control.Style = reader.Long();
    control.X = reader.Short();
    control.Y = reader.Short();
    control.Width = reader.Short();
    control.Height = reader.Short();
    control.Id = static_cast<std::int32_t>(reader.Long());
    if (control.Id == 0xFFFF) {
        control.Id = TemplateControl::NoId;
    }
    control.ClassName = reader.ClassName();
    control.Text = reader.TextOrNumber();
    reader.Skip(reader.Word()); // creation data
    control.Kind = KindOf(control);
    return control;
}

} // namespace

DialogTemplate ParseDialogTemplate(std::span<const std::byte> bytes) {
    constexpr std::uint32_t ExtendedForm = 0xFFFF0001U;
    constexpr std::uint32_t HasFont = 0x40;
    Reader reader(bytes);
    if (reader.Long() != ExtendedForm) {
        throw std::runtime_error("no extended dialog template");
    }
    DialogTemplate result;
    reader.Long(); // help id
    result.ExtendedStyle = reader.Long();
    result.Style = reader.Long();
    const int count = reader.Word();
    reader.Skip(4); // position
    result.Width = reader.Short();
    result.Height = reader.Short();
    reader.TextOrNumber(); // menu
    reader.TextOrNumber(); // class
    result.Title = reader.Text();
    if ((result.Style & HasFont) != 0) {
        result.FontPoints = reader.Word();
        reader.Skip(4); // weight, italic, character set
        result.FontName = reader.Text();
    }
    for (int index = 0; index < count; ++index) {
        result.Controls.push_back(ReadControl(reader));
    }
    return result;
}

} // namespace pmx::test
