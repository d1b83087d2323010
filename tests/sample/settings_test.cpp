// The settings of the print-attribute dialog, without its windows.
#include "propui/settings.h"

#include <algorithm>
#include <cstring>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pmx::sample {
namespace {

const unsigned char* BytesOf(const AttributeTable& table) {
    return reinterpret_cast<const unsigned char*>(&table);
}

std::set<std::size_t> DifferentBytes(const AttributeTable& left, const AttributeTable& right) {
    std::set<std::size_t> places;
    for (std::size_t place = 0; place < TableSize; ++place) {
        if (BytesOf(left)[place] != BytesOf(right)[place]) {
            places.insert(place);
        }
    }
    return places;
}

std::size_t PartEnd(Level level) {
    return level == Level::Page ? TableSize : PartStart(static_cast<Level>(static_cast<int>(level) + 1));
}

template <typename Action>
void ForEachSetting(Action action) {
    for (const SettingsTab& tab : SettingsTabs()) {
        for (const Setting& setting : tab.Settings) {
            SCOPED_TRACE("control " + std::to_string(setting.Control));
            action(tab, setting);
        }
    }
}

AttributeTable TableOfBytes(unsigned char byte) {
    AttributeTable table;
    std::memset(static_cast<void*>(&table), byte, TableSize);
    return table;
}

/// Writes every value that matters, one after the other.
std::set<std::size_t> BytesThatChange(const Setting& setting) {
    std::set<std::size_t> changed;
    for (const unsigned char ground : {0x00, 0xFF}) {
        AttributeTable table = TableOfBytes(ground);
        if (setting.Type == SettingType::Words) {
            setting.SetWords(table, std::string(static_cast<std::size_t>(setting.Detail), 'x'));
        } else {
            setting.Set(table, setting.Lowest);
        }
        changed.merge(DifferentBytes(table, TableOfBytes(ground)));
    }
    return changed;
}

TEST(SettingsTest, TabsStandInTheOrderOfTheirParts) {
    EXPECT_TRUE(std::is_sorted(
        SettingsTabs().begin(), SettingsTabs().end(),
        [](const SettingsTab& left, const SettingsTab& right) { return left.Part < right.Part; }));
}

TEST(SettingsTest, EveryPartHasATab) {
    std::set<Level> parts;
    for (const SettingsTab& tab : SettingsTabs()) {
        parts.insert(tab.Part);
    }
    EXPECT_EQ(parts.size(), 5U);
}

TEST(SettingsTest, NoTwoSettingsShareAControl) {
    std::set<int> controls;
    ForEachSetting([&](const SettingsTab&, const Setting& setting) {
        EXPECT_TRUE(controls.insert(setting.Control).second);
    });
}

TEST(SettingsTest, EachSettingChangesOnlyBytesOfItsPart) {
    ForEachSetting([](const SettingsTab& tab, const Setting& setting) {
        const auto changed = BytesThatChange(setting);
        ASSERT_FALSE(changed.empty());
        EXPECT_GE(*changed.begin(), PartStart(tab.Part));
        EXPECT_LT(*changed.rbegin(), PartEnd(tab.Part));
    });
}

TEST(SettingsTest, NoTwoSettingsShareAByte) {
    std::set<std::size_t> taken;
    ForEachSetting([&](const SettingsTab&, const Setting& setting) {
        for (const std::size_t place : BytesThatChange(setting)) {
            EXPECT_TRUE(taken.insert(place).second) << "byte " << place;
        }
    });
}

TEST(SettingsTest, TheDialogShowsEveryFieldButTheOverridesAndReservedBytes) {
    AttributeTable hidden = TableOfBytes(0);
    hidden.Document.LayoutVersion = std::uint16_t{0xFFFF};
    hidden.Document.Rest.Bytes.fill(1);
    hidden.Section.Rest.Bytes.fill(1);
    hidden.Sheet.Rest.Bytes.fill(1);
    hidden.Face.Mark.Spare = 1;
    hidden.Face.Spare.Bytes.fill(1);
    std::memset(static_cast<void*>(&hidden.Face.Overrides), 1, sizeof hidden.Face.Overrides);
    hidden.Face.Rest.Bytes.fill(1);
    hidden.Page.Rest.Bytes.fill(1);
    std::memset(static_cast<void*>(&hidden.Page.Overrides), 1, sizeof hidden.Page.Overrides);
    auto covered = DifferentBytes(hidden, TableOfBytes(0));
    ForEachSetting(
        [&](const SettingsTab&, const Setting& setting) { covered.merge(BytesThatChange(setting)); });
    EXPECT_EQ(covered.size(), TableSize);
}

TEST(SettingsTest, EachSettingGivesBackWhatItWasGiven) {
    ForEachSetting([](const SettingsTab&, const Setting& setting) {
        AttributeTable table = FreshTable();
        if (setting.Type == SettingType::Words) {
            EXPECT_TRUE(setting.SetWords(table, "\x8E\xD0\x8A\x4F"));
            EXPECT_EQ(setting.GetWords(table), "\x8E\xD0\x8A\x4F");
            return;
        }
        for (const int value : {setting.Lowest, (setting.Lowest + setting.Highest) / 2, setting.Highest}) {
            setting.Set(table, value);
            EXPECT_EQ(setting.Get(table), value);
        }
    });
}

TEST(SettingsTest, TextThatIsTooLongIsRefusedAndKeepsTheFormerOne) {
    ForEachSetting([](const SettingsTab&, const Setting& setting) {
        if (setting.Type != SettingType::Words) {
            return;
        }
        AttributeTable table = FreshTable();
        setting.SetWords(table, "former");
        EXPECT_FALSE(setting.SetWords(table, std::string(static_cast<std::size_t>(setting.Detail) + 1, 'x')));
        EXPECT_EQ(setting.GetWords(table), "former");
    });
}

TEST(SettingsTest, RangesAreThoseThatTheTableIsLimitedTo) {
    ForEachSetting([](const SettingsTab&, const Setting& setting) {
        if (setting.Type != SettingType::Number) {
            return;
        }
        AttributeTable table = FreshTable();
        for (const int bound : {setting.Lowest, setting.Highest}) {
            setting.Set(table, bound);
            EXPECT_EQ(setting.Get(Limited(table)), bound);
        }
        setting.Set(table, setting.Highest + 1);
        EXPECT_EQ(setting.Get(Limited(table)), setting.Highest);
    });
}

TEST(SettingsTest, SettingsWithoutMeaningAreThoseThatAnotherOneSwitchesOff) {
    AttributeTable table = FreshTable();
    const auto used = [&table] {
        std::size_t count = 0;
        ForEachSetting([&](const SettingsTab&, const Setting& setting) {
            count += setting.IsUsed == nullptr || setting.IsUsed(table) ? 1 : 0;
        });
        return count;
    };
    const std::size_t plain = used();
    table.Document.Paper = PaperSize::Custom;
    EXPECT_EQ(used(), plain + 2);
    table.Face.MirrorMargins = false;
    EXPECT_EQ(used(), plain + 6);
}

struct Shown {
    int Decimals;
    int Value;
    const char* Text;
};

class NumberTest : public testing::TestWithParam<Shown> {};

TEST_P(NumberTest, IsShownAndReadWithItsDecimals) {
    const auto& [decimals, value, text] = GetParam();
    const Setting setting{.Control = 0, .Type = SettingType::Number, .Decimals = decimals};
    EXPECT_EQ(ShownNumber(setting, value), text);
    int read = -1;
    EXPECT_TRUE(ParseNumber(setting, text, read));
    EXPECT_EQ(read, value);
}

INSTANTIATE_TEST_SUITE_P(Numbers, NumberTest,
                         testing::Values(Shown{0, 0, "0"}, Shown{0, -180, "-180"}, Shown{1, 50, "5.0"},
                                         Shown{1, -5, "-0.5"}, Shown{1, 4500, "450.0"}, Shown{2, -7, "-0.07"},
                                         Shown{2, 123, "1.23"}));

TEST(ParseNumberTest, TakesFewerDecimalsAndBlanksAround) {
    const Setting setting{.Control = 0, .Type = SettingType::Number, .Decimals = 1};
    int read = 0;
    EXPECT_TRUE(ParseNumber(setting, " 12 ", read));
    EXPECT_EQ(read, 120);
}

TEST(ParseNumberTest, RefusesWhatIsNoNumber) {
    const Setting setting{.Control = 0, .Type = SettingType::Number, .Decimals = 1};
    int read = 7;
    for (const char* text :
         {"", " ", "-", ".", "1.", ".5", "1.25", "1,5", "1 2", "--1", "1.-5", "0x1", "9999999", "1.5mm"}) {
        EXPECT_FALSE(ParseNumber(setting, text, read)) << text;
    }
    EXPECT_EQ(read, 7);
}

} // namespace
} // namespace pmx::sample
