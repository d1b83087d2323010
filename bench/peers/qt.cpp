#include "peers.h"

#include "durable.h"
#include "parse.h"

#include "store/list_file.h"

#include <cstdio>
#include <stdexcept>

#include <QSettings>
#include <QString>

namespace pmx::bench {

namespace {

QString DataKey(std::size_t number) {
    static const QString prefix = QString::fromLatin1(DataName);
    return prefix + QString::number(number);
}

Records Load(const std::string& path) {
    QSettings settings(QString::fromStdString(path), QSettings::IniFormat);
    settings.beginGroup(QString::fromLatin1(SectionName));
    const auto count =
        static_cast<std::size_t>(std::max(settings.value(QString::fromLatin1(CountName)).toInt(), 0));
    Records records;
    for (std::size_t number = 0; number < count; ++number) {
        const QByteArray value = settings.value(DataKey(number)).toString().toUtf8();
        records.push_back(FavoriteOf({value.constData(), static_cast<std::size_t>(value.size())}, false));
    }
    return records;
}

/// QSettings writes a temporary file, flushes it and renames it by itself.
void Save(const std::string& path, const Records& records) {
    QSettings settings(QString::fromStdString(path), QSettings::IniFormat);
    settings.clear();
    settings.beginGroup(QString::fromLatin1(SectionName));
    settings.setValue(QString::fromLatin1(CountName), static_cast<int>(records.size()));
    for (std::size_t number = 0; number < records.size(); ++number) {
        settings.setValue(DataKey(number), QString::fromStdString(FormatListValue(*records[number])));
    }
    settings.sync();
    if (settings.status() != QSettings::NoError) {
        throw std::runtime_error("QSettings cannot write the list file");
    }
    FlushFolderOf(path);
}

} // namespace

const Peer QtPeer{"QSettings", true, Load, Save};

} // namespace pmx::bench
