#include "support/hostile_lists.h"

namespace pmx::test {

std::vector<std::string> FavoritesAtEveryLimit() {
    std::vector<std::string> values;
    for (const char* const number :
         {"-2147483649", "-2147483648", "-1", "0", "6", "59", "60", "100", "101", "105", "106", "2147483647",
          "2147483648", "99999999999999999999", "x", "0x10"}) {
        const std::string name = "n" + std::to_string(values.size());
        values.push_back(std::string(number) + "~" + name + "~1~0~14~3");
        values.push_back("0~" + name + "l~" + number + "~0~14~3");
        values.push_back("0~" + name + "t~1~" + number + "~14~3");
        values.push_back("0~" + name + "i~1~1~" + number + "~3");
    }
    return values;
}

std::vector<std::string> FavoritesWithBrokenNames() {
    std::vector<std::string> values;
    for (const std::string& name :
         {std::string(10'000, 'n'), std::string(259, '\x81'), std::string(260, 'm'), std::string("\x83"),
          std::string("a\x83"), std::string("%s%n%d%x"), std::string("\x01\x02\x1F\x7F"),
          std::string("\xFF\xFE\x80\xA0\xFD"), std::string("\x81\x20\x81"), std::string("..\\..\\x"),
          std::string("a&b\tc"), std::string("[x]=;y"), std::string("\x83\x7E\x83"),
          std::string("\x81\x81\x7E")}) {
        const std::string number = std::to_string(values.size());
        values.push_back(std::string("0~").append(name).append("~1~1~14~f").append(number).append(".pmt"));
        values.push_back(std::string("0~n").append(number).append("~1~1~14~").append(name));
    }
    return values;
}

std::vector<std::string> FavoritesThatPointOutside(const std::string& outside) {
    return {"0~A~1~1~14~..\\outside.pmt",
            "0~B~1~1~14~../outside.pmt",
            "0~C~1~1~14~" + outside,
            "0~D~1~1~14~.\\..\\outside.pmt",
            "0~E~1~1~14~\\outside.pmt",
            "0~F~1~1~14~C:outside.pmt",
            "0~G~1~1~14~..",
            "0~H~1~1~14~.",
            "0~I~1~1~14~NUL",
            "0~J~1~1~14~con.pmt",
            "0~K~1~1~14~PmxTempleList.ini",
            "0~L~1~1~14~a.pmt:stream",
            "0~M~1~1~14~\x81/..\\outside.pmt",
            "0~N~1~1~14~\\\\?\\" + outside,
            "0~O~1~1~14~..\\Outside\\kept.pmt"};
}

std::vector<std::string> HostileCounts() {
    return {"2147483647",           "2147483648", "4294967295", "-1", "-2147483648",
            "99999999999999999999", "",           "x",          "1"};
}

} // namespace pmx::test
