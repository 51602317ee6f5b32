// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/model/Configuration.h"

#include "process/ProcessGuard.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHostAddress>
#include <QProcessEnvironment>
#include <QSaveFile>
#include <QStandardPaths>

namespace
{

struct Option {
    const char16_t *key;
    const char16_t *variable;
};

constexpr Option urlOption{u"url", u"QUILLET_MODEL_URL"};
constexpr Option nameOption{u"name", u"QUILLET_MODEL_NAME"};
constexpr Option keyOption{u"key", u"QUILLET_MODEL_KEY"};
constexpr Option temperatureOption{u"temperature", u"QUILLET_MODEL_TEMPERATURE"};
constexpr Option timeoutOption{u"timeout", u"QUILLET_MODEL_TIMEOUT"};
constexpr Option windowOption{u"window", u"QUILLET_MODEL_WINDOW"};
constexpr Option findOption{u"find-ollama", u"QUILLET_FIND_OLLAMA"};
/// Only in the file: the program that starts this one cannot answer for the user.
constexpr Option foundOption{u"found-server", u""};
constexpr Option allOptions[] = {urlOption,     nameOption,   keyOption,  temperatureOption,
                                 timeoutOption, windowOption, findOption, foundOption};
const QString modelSection = QStringLiteral("[model]");

/// A value and where it stands, for messages.
struct Value {
    QString text;
    QString place;
};

class Reader
{
public:
    Reader(const QString &path, const ConfigurationFile::Environment &environment)
    {
        readFile(path);
        for (const Option &option : allOptions) {
            const QString variable = QString::fromUtf16(option.variable);
            const QString text = environment.value(variable).trimmed();
            if (!variable.isEmpty() && !text.isEmpty())
                m_values.insert(QString::fromUtf16(option.key), {text, variable});
        }
    }

    Configuration read()
    {
        Configuration result;
        ModelSettings &settings = result.defaults;
        settings.name = text(nameOption);
        settings.key = key();
        if (!text(temperatureOption).isEmpty())
            settings.temperature = number(temperatureOption, 0.3, 0, 2);
        const double seconds = std::chrono::duration<double>(settings.timeout).count();
        settings.timeout = std::chrono::seconds(int(number(timeoutOption, seconds, 1, 3600)));
        settings.window = int(number(windowOption, settings.window, 2048, 4'000'000));
        result.findServer = flag(findOption, true);
        result.foundServer = serverAnswer();
        if (m_values.contains(QString::fromUtf16(urlOption.key))) {
            // A server that is named is the only one that is meant.
            result.findServer = false;
            if (const auto url = chatUrl()) {
                result.model = settings;
                result.model->url = *url;
            }
        }
        result.problems = m_problems;
        return result;
    }

private:
    void readFile(const QString &path)
    {
        QFile file(path);
        if (!file.exists())
            return;
        if (!file.open(QIODevice::ReadOnly)) {
            m_problems += QStringLiteral("%1 cannot be read: %2.").arg(path, file.errorString());
            return;
        }
        bool inModelSection = false;
        int number = 0;
        const auto lines = QString::fromUtf8(file.read(64 * 1024)).split(u'\n');
        for (const QString &raw : lines) {
            const QString line = raw.trimmed();
            const QString place = QStringLiteral("%1, line %2").arg(path).arg(++number);
            if (line.isEmpty() || line.startsWith(u'#') || line.startsWith(u';'))
                continue;
            if (line.startsWith(u'[')) {
                inModelSection = line == modelSection;
                if (!inModelSection)
                    complain(place, QStringLiteral("the only section is [model]"));
                continue;
            }
            const auto equals = line.indexOf(u'=');
            const QString name = line.left(equals).trimmed().toLower();
            // The value may be the key, put on the wrong line: only names are repeated.
            if (equals < 0)
                complain(place, QStringLiteral("a line must read \"setting = value\""));
            else if (!inModelSection)
                complain(place, QStringLiteral("\"%1\" must stand below [model]").arg(name));
            else if (!isOption(name))
                complain(place, QStringLiteral("there is no setting \"%1\"").arg(name));
            else if (const QString value = line.mid(equals + 1).trimmed(); !value.isEmpty())
                m_values.insert(name, {value, place});
        }
        const auto others = QFile::ReadGroup | QFile::ReadOther;
        if (m_values.contains(QString::fromUtf16(keyOption.key)) && (file.permissions() & others)) {
            m_problems += QStringLiteral("%1 holds a key that other users of this machine can "
                                         "read; run: chmod 600 %1")
                              .arg(path);
        }
    }

    static bool isOption(const QString &name)
    {
        return std::any_of(std::begin(allOptions), std::end(allOptions),
                           [&](const Option &option) { return name == option.key; });
    }

    void complain(const QString &place, const QString &what)
    {
        m_problems += place + QStringLiteral(": ") + what + u'.';
    }

    QString text(const Option &option) const
    {
        return m_values.value(QString::fromUtf16(option.key)).text;
    }

    double number(const Option &option, double fallback, double low, double high)
    {
        const Value value = m_values.value(QString::fromUtf16(option.key));
        if (value.text.isEmpty())
            return fallback;
        bool valid = false;
        const double result = value.text.toDouble(&valid);
        if (valid && result >= low && result <= high)
            return result;
        complain(value.place,
                 QStringLiteral("%1 must be a number from %2 to %3, not \"%4\"; %5 is used")
                     .arg(QString::fromUtf16(option.key))
                     .arg(low)
                     .arg(high, 0, 'f', 0)
                     .arg(value.text)
                     .arg(fallback));
        return fallback;
    }

    bool flag(const Option &option, bool fallback)
    {
        const Value value = m_values.value(QString::fromUtf16(option.key));
        const QString word = value.text.toLower();
        if (word.isEmpty())
            return fallback;
        if (QStringList{u"1"_qs, u"true"_qs, u"yes"_qs, u"on"_qs}.contains(word))
            return true;
        if (QStringList{u"0"_qs, u"false"_qs, u"no"_qs, u"off"_qs}.contains(word))
            return false;
        complain(value.place, QStringLiteral("%1 must be true or false, not \"%2\"")
                                  .arg(QString::fromUtf16(option.key), value.text));
        return fallback;
    }

    /// "127.0.0.1:11434, 998, yes": host and port, the owner's user id, the answer.
    std::optional<ServerAnswer> serverAnswer()
    {
        const Value value = m_values.value(QString::fromUtf16(foundOption.key));
        if (value.text.isEmpty())
            return std::nullopt;
        const QStringList parts = value.text.split(u',');
        bool valid = false;
        const unsigned owner = parts.value(1).trimmed().toUInt(&valid);
        const QString word = parts.value(2).trimmed();
        if (parts.size() == 3 && valid && (word == u"yes" || word == u"no"))
            return ServerAnswer{parts[0].trimmed(), owner, word == u"yes"};
        complain(value.place, QStringLiteral("found-server must read \"host:port, user id, yes\" "
                                             "or \"…, no\""));
        return std::nullopt;
    }

    QByteArray key()
    {
        const Value value = m_values.value(QString::fromUtf16(keyOption.key));
        const bool printable = std::all_of(value.text.cbegin(), value.text.cend(),
                                           [](QChar c) { return c > u' ' && c < u'\x7f'; });
        if (printable)
            return value.text.toLatin1();
        complain(value.place, QStringLiteral("the key has characters that no key has; it is not "
                                             "used"));
        return {};
    }

    std::optional<QUrl> chatUrl()
    {
        const Value value = m_values.value(QString::fromUtf16(urlOption.key));
        QUrl url(value.text, QUrl::StrictMode);
        const bool web = url.scheme() == u"http" || url.scheme() == u"https";
        if (!url.isValid() || !web || url.host().isEmpty() || !url.userInfo().isEmpty() ||
            url.hasQuery() || url.hasFragment()) {
            // Not repeated: a person may have put a key or a password into it.
            complain(value.place, QStringLiteral("url must be an address such as "
                                                 "http://127.0.0.1:11434/v1 without user name, "
                                                 "\"?\" or \"#\"; no model is used"));
            return std::nullopt;
        }
        QString path = url.path();
        while (path.endsWith(u'/'))
            path.chop(1);
        if (path.isEmpty())
            path = QStringLiteral("/v1");
        if (!path.endsWith(u"/chat/completions"))
            path += QStringLiteral("/chat/completions");
        url.setPath(path);
        const bool local = url.host() == u"localhost" || QHostAddress(url.host()).isLoopback();
        if (url.scheme() == u"http" && !local && !key().isEmpty()) {
            complain(value.place, QStringLiteral("the key and your texts go over an unencrypted "
                                                 "connection; use https if the server has it"));
        }
        return url;
    }

    QHash<QString, Value> m_values;
    QStringList m_problems;
};

} // namespace

QString ModelSettings::server() const
{
    return url.host() + (url.port() < 0 ? QString() : QStringLiteral(":%1").arg(url.port()));
}

ConfigurationFile::ConfigurationFile(QString path, Environment environment)
    : m_path(std::move(path))
    , m_environment(std::move(environment))
{
}

QString ConfigurationFile::defaultPath()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation))
        .filePath(QStringLiteral("quillet/backend.ini"));
}

ConfigurationFile::Environment ConfigurationFile::processEnvironment()
{
    const auto process = QProcessEnvironment::systemEnvironment();
    Environment result;
    for (const Option &option : allOptions) {
        const QString variable = QString::fromUtf16(option.variable);
        if (!variable.isEmpty())
            result.insert(variable, process.value(variable));
    }
    forgetVariable("QUILLET_MODEL_KEY");
    return result;
}

bool ConfigurationFile::remember(const ServerAnswer &answer)
{
    constexpr qint64 maxSize = 64 * 1024;
    QFile file(m_path);
    QStringList lines;
    if (file.exists()) {
        if (file.size() > maxSize || !file.open(QIODevice::ReadOnly))
            return false;
        // Latin-1 keeps every byte of the user's lines, also where they are not UTF-8.
        lines = QString::fromLatin1(file.readAll()).split(u'\n');
        file.close();
    }
    const QString key = QString::fromUtf16(foundOption.key);
    lines.removeIf([&](const QString &line) {
        return line.section(u'=', 0, 0).trimmed().toLower() == key && line.contains(u'=');
    });
    const QString line = QStringLiteral("%1 = %2, %3, %4")
                             .arg(key, answer.address)
                             .arg(answer.owner)
                             .arg(answer.agreed ? u"yes"_qs : u"no"_qs);
    qsizetype section = 0;
    while (section < lines.size() && lines[section].trimmed() != modelSection)
        ++section;
    if (section < lines.size()) {
        lines.insert(section + 1, line);
    } else {
        // Below all others, so that no line moves into the section.
        if (!lines.isEmpty() && lines.last().isEmpty())
            lines.removeLast();
        lines += {modelSection, line, QString()};
    }
    QDir().mkpath(QFileInfo(m_path).path());
    QSaveFile written(m_path);
    if (!written.open(QIODevice::WriteOnly))
        return false;
    // It may hold a key.
    written.setPermissions(file.exists() ? file.permissions()
                                         : QFile::ReadOwner | QFile::WriteOwner);
    written.write(lines.join(u'\n').toLatin1());
    m_readAt.reset();
    return written.commit();
}

const Configuration &ConfigurationFile::current()
{
    const QFileInfo info(m_path);
    const QDateTime modified = info.exists() ? info.lastModified() : QDateTime();
    const qint64 size = info.exists() ? info.size() : -1;
    // A file changed twice within the clock's step would otherwise go unnoticed.
    const bool settled = m_readAt && (!modified.isValid() || modified.msecsTo(*m_readAt) > 1000);
    if (!settled || modified != m_modified || size != m_size) {
        m_readAt = QDateTime::currentDateTimeUtc();
        m_modified = modified;
        m_size = size;
        m_configuration = Reader(m_path, m_environment).read();
    }
    return m_configuration;
}
