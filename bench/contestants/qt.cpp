#include "contestant.h"
#include "list_text.h"
#include "whole_file.h"

#include <QSettings>
#include <QString>

namespace pmx::bench {

namespace {

/// It keeps no bytes, only characters: each byte goes in as the character of its number.
QString TextOf(std::string_view bytes) {
    return QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

QByteArray ValueOf(const QSettings& settings, const std::string& key) {
    return settings.value(TextOf(key)).toString().toLatin1();
}

void Load(const Place& place, CPMXTemplUIListDataArray& list) {
    QSettings settings(QString::fromStdString(place.Path), QSettings::IniFormat);
    settings.beginGroup(TextOf(Section));
    const std::size_t count = NumberOf(ValueOf(settings, CountKey).constData());
    for (std::size_t number = 0; number < count; ++number) {
        AddFavorite(ValueOf(settings, DataKeyPrefix + std::to_string(number)).constData(), list);
    }
}

void Save(const Place& place, CPMXTemplUIListDataArray& list) {
    QSettings settings(QString::fromStdString(Aside(place.Path)), QSettings::IniFormat);
    settings.beginGroup(TextOf(Section));
    WriteSection(list,
                 [&](const char* key, const char* value) { settings.setValue(TextOf(key), TextOf(value)); });
    settings.sync();
    Require(settings.status() == QSettings::NoError, "QSettings cannot save");
    PutInPlace(place.Path);
}

const Added Qt{{"QSettings", Load, Save}};

} // namespace

} // namespace pmx::bench
