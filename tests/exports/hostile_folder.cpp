#include "exports/hostile_folder.h"

#include <cstdlib>
#include <cstring>

namespace pmx::exports_test {

namespace {

constexpr std::int32_t DocumentLevel = 101; // user favorites of level 1, and standard ones

void WriteFavorite(const std::string& path, unsigned char seed) {
    CPmxDocument document;
    _LM_DOCUMENTLAYOUTTABLE block{};
    const std::vector<unsigned char> table = TableOf(seed);
    std::memcpy(block.Bytes, table.data(), table.size());
    document.SetTemplateLevel(1);
    ASSERT_TRUE(document.SetTable(block, false));
    ASSERT_TRUE(document.SetName("inside"));
    ASSERT_TRUE(document.Save(path.c_str()));
}

} // namespace

std::vector<std::string> FavoritesOfEveryKindOfFile() {
    std::vector<std::string> values;
    for (const char* const name : {"good", "damaged", "empty", "cut", "altered", "huge", "folder", "link",
                                   "nowhere", "loop", "linked", "pipe", "missing"}) {
        values.push_back(std::string("0~") + name + "~1~1~14~" + name + ".pmt");
    }
    return values;
}

/// Not the folder in memory, which lies below one that Wine's file dialogs do not show.
std::filesystem::path HostileFolder::Place() {
    const char* const build = std::getenv("PMX_BUILD_FOLDER");
    return build == nullptr ? std::filesystem::temp_directory_path()
                            : std::filesystem::absolute(build) / "temp";
}

HostileFolder::HostileFolder() {
    Folder.AddFolder("Favorites");
    Folder.AddFolder("Outside");
    WriteFavorite(Folder.Path("outside.pmt"), 1);
    WriteFavorite(Folder.Path("Outside\\kept.pmt"), 2);
    OutsideBefore = Outside();
}

HostileFolder::~HostileFolder() {
    EXPECT_EQ(Folder.Names(), (std::vector<std::string>{"Favorites", "Outside", "outside.pmt"}))
        << "something outside was made or deleted";
    EXPECT_TRUE(Outside() == OutsideBefore) << "something outside was changed";
}

std::map<std::string, std::string> HostileFolder::Outside() const {
    std::map<std::string, std::string> files;
    for (const char* const name : {"outside.pmt", "Outside\\kept.pmt"}) {
        files[name] = Folder.Exists(name) ? Folder.Read(name) : "none";
    }
    return files;
}

void HostileFolder::WriteEveryKindOfFile() const {
    WriteFavorite(Favorites("good.pmt"), 10);
    const std::string good = Folder.Read("Favorites\\good.pmt");
    std::string altered = good;
    altered[altered.size() / 2] ^= 1;
    Folder.Write("Favorites\\damaged.pmt", "damaged");
    Folder.Write("Favorites\\empty.pmt", "");
    Folder.Write("Favorites\\cut.pmt", good.substr(0, good.size() / 2));
    Folder.Write("Favorites\\altered.pmt", altered);
    Folder.AddFolder("Favorites\\folder.pmt");
    Folder.Write("Favorites\\folder.pmt\\kept", "content");
    RunShell(Folder,
             "cd Favorites && truncate -s 200M huge.pmt && mkfifo pipe.pmt && ln -s ../outside.pmt link.pmt "
             "&& ln -s ../nothing.pmt nowhere.pmt && ln -s loop.pmt loop.pmt && ln -s ../Outside "
             "linked.pmt");
}

void HostileFolder::WriteList(const std::string& count, const std::vector<std::string>& values) const {
    std::string text = Section(values);
    const std::string key = "TemplateNum=";
    const std::size_t begin = text.find(key) + key.size();
    text.replace(begin, text.find('\r', begin) - begin, count);
    Folder.Write(std::string("Favorites\\") + ListFile, text);
}

void HostileFolder::WriteList(const std::vector<std::string>& values) const {
    WriteList(std::to_string(values.size()), values);
}

ListHandle HostileFolder::Open() const {
    return ListHandle(EX_CreateTemplList(Favorites().c_str(), nullptr, nullptr));
}

std::vector<std::string> HostileFolder::ListedNames() const {
    const ListHandle handle = Open();
    const std::int64_t size = EX_GetTemplListSize(handle.get(), DocumentLevel);
    std::vector<TemplInfo> infos(static_cast<std::size_t>(size) / sizeof(TemplInfo) + 1);
    std::int64_t count = 0;
    EXPECT_EQ(EX_GetAllTemplInfo(handle.get(), DocumentLevel, infos.data(), size, &count), 0);
    infos.resize(static_cast<std::size_t>(count));
    std::vector<std::string> names;
    names.reserve(infos.size());
    for (const TemplInfo& info : infos) {
        names.emplace_back(info.Name);
    }
    return names;
}

std::vector<std::string> HostileFolder::LeftBehind() const {
    std::vector<std::string> names;
    for (const std::filesystem::directory_entry& entry :
         std::filesystem::directory_iterator(test::DiskPath(Favorites()))) {
        if (entry.path().extension() == ".tmp") {
            names.push_back(entry.path().filename().string());
        }
    }
    return names;
}

} // namespace pmx::exports_test
