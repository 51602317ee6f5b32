// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/OfflineEngine.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <thread>

namespace
{

/// An installation of Apertium whose program notes its arguments and answers
/// its input with the mode's name before each line.
class FakeApertium
{
public:
    explicit FakeApertium(std::initializer_list<const char *> modes, const char *ending = "")
    {
        QDir(m_dir.path()).mkdir(QStringLiteral("modes"));
        for (const char *mode : modes)
            write(QStringLiteral("modes/") + QString::fromUtf8(mode) + QStringLiteral(".mode"), {});
        write(QStringLiteral("apertium"),
              "#!/bin/sh\necho \"$*\" >> \"$(dirname \"$0\")/arguments\"\nsed \"s/^/$2:/\"" +
                  QByteArray(ending) + '\n');
        QFile::setPermissions(paths().apertium, QFile::ReadOwner | QFile::ExeOwner);
    }

    OfflinePaths paths() const
    {
        OfflinePaths result;
        result.apertium = m_dir.filePath(QStringLiteral("apertium"));
        result.apertiumModes = m_dir.filePath(QStringLiteral("modes"));
        return result;
    }

    std::string arguments() const
    {
        QFile file(m_dir.filePath(QStringLiteral("arguments")));
        return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
    }

private:
    void write(const QString &name, const QByteArray &content) const
    {
        QFile file(m_dir.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    QTemporaryDir m_dir;
};

OfflineAnswer translated(const FakeApertium &apertium, const char *language, const char *text)
{
    return OfflineEngine(apertium.paths())
        .answer(QString::fromUtf8(language), QString::fromUtf8(text));
}

constexpr const char *french = "Bonjour, je ne suis pas dans la maison.\nElle est avec nous.";

TEST(Translate, TakesTheStraightPairAndPassesTheTextAsInput)
{
    const FakeApertium apertium({"eng-spa", "eng-cat", "cat-spa"});
    const OfflineAnswer answer =
        translated(apertium, "spanish", "This is the house.\n\nIt is not yours.");
    EXPECT_TRUE(answer.supported);
    EXPECT_EQ(answer.text.toStdString(),
              "eng-spa:This is the house.\neng-spa:\neng-spa:It is not yours.");
    EXPECT_EQ(apertium.arguments(), "-u eng-spa\n");
    EXPECT_EQ(answer.remark.toStdString(), "A rough translation: read it before you use it.");
    const OfflineAnswer near = translated(FakeApertium({"fr-es"}), "spanish", french);
    EXPECT_TRUE(near.supported && near.remark.isEmpty());
    const OfflineAnswer far = translated(FakeApertium({"fra-cat", "cat-eng"}), "english", french);
    EXPECT_TRUE(far.remark.contains(QStringLiteral("by way of another language")));
}

TEST(Translate, GoesThroughAnotherLanguageWhereItMust)
{
    const FakeApertium apertium({"fra-cat", "cat-eng", "fr-es", "cat-ita"});
    EXPECT_TRUE(translated(apertium, "english", french)
                    .text.startsWith(QStringLiteral("cat-eng:fra-cat:Bonjour")));
    EXPECT_EQ(apertium.arguments(), "-u fra-cat\n-u cat-eng\n");
}

TEST(Translate, KeepsLinksAddressesAndCode)
{
    const FakeApertium apertium({"eng-spa"}, " | sed 's/com/comment/g; s/see/ver/g'");
    EXPECT_EQ(translated(apertium, "spanish",
                         "You see the welcome at https://example.com/see?x=1, and\n"
                         "`see.com` too: write to see@example.com.")
                  .text.toStdString(),
              "eng-spa:You ver the welcommente at https://example.com/see?x=1, and\n"
              "eng-spa:`see.com` too: write to see@example.com.");
    // Names, times, units and initials stay too.
    EXPECT_EQ(translated(FakeApertium({"eng-spa"}, " | sed 's/Rust/Moho/; s/am/soy/; s/km/q/'"),
                         "spanish", "Rust is good. We like Rust at 10:30 am, 5 km from here.")
                  .text.toStdString(),
              "eng-spa:Rust is good. We like Rust at 10:30 am, 5 km from here.");
    const FakeApertium careless({"eng-spa"}, " | sed 's/Xqz/xq/'");
    EXPECT_FALSE(translated(careless, "spanish", "You see it at https://example.com.").supported);
}

TEST(Translate, NamesWhatIsMissing)
{
    const FakeApertium some({"fra-cat"});
    const OfflineAnswer pair = translated(some, "english", french);
    EXPECT_FALSE(pair.supported);
    EXPECT_EQ(pair.text.toStdString(),
              "Apertium's data for French to English is not installed: install the package "
              "apertium-eng-cat.");
    EXPECT_EQ(some.arguments(), "");

    OfflinePaths none;
    none.apertium = QStringLiteral("/nonexistent/apertium");
    const OfflineAnswer program =
        OfflineEngine(none).answer(QStringLiteral("english"), QString::fromUtf8(french));
    EXPECT_FALSE(program.supported);
    EXPECT_TRUE(program.text.endsWith(u"install the package apertium."));

    const FakeApertium failing({"fra-cat", "cat-eng"}, "\nexit 3");
    EXPECT_FALSE(translated(failing, "english", french).supported);
}

TEST(Translate, TellsTheLanguagesApart)
{
    const struct {
        const char *text;
        const char *mode; ///< of the step into Catalan, or nothing when refused
    } cases[] = {
        {"I would like to buy a house near the sea.", "eng-cat"},
        {"Me gustaría comprar una casa cerca del mar, pero es muy cara.", "spa-cat"},
        {"Gostaria de comprar uma casa perto do mar, mas não tenho dinheiro.", "por-cat"},
        {"Vorrei comprare una casa vicino al mare, ma non ho soldi.", "ita-cat"},
        {"J'aimerais acheter une maison près de la mer, mais c'est cher.", "fra-cat"},
        {"Ich möchte ein Haus am Meer kaufen, aber es ist zu teuer.", nullptr},
        {"Ik wil graag een huis aan zee kopen, maar het is te duur.", nullptr},
        {"Chciałbym kupić dom nad morzem, ale nie mam na to pieniędzy.", nullptr},
        {"Я хотел бы купить дом у моря.", nullptr},
        {"我想在海边买房子。", nullptr},
        {"12345 !?", nullptr},
        {"La riunione è lunedì alle dieci.", "ita-cat"},
        {"A reunião é na segunda-feira às dez.", "por-cat"},
    };
    for (const auto &item : cases) {
        const FakeApertium apertium({"eng-cat", "spa-cat", "por-cat", "ita-cat", "fra-cat"});
        const OfflineAnswer answer = translated(apertium, "catalan", item.text);
        EXPECT_EQ(answer.supported, item.mode != nullptr) << item.text;
        if (item.mode) {
            EXPECT_EQ(apertium.arguments(), std::string("-u ") + item.mode + "\n") << item.text;
        }
    }
    const FakeApertium apertium({"cat-spa"});
    const char *catalan = "M'agradaria comprar una casa a prop del mar, però és massa cara.";
    EXPECT_EQ(translated(apertium, "catalan", catalan).text.toStdString(), catalan);
    const char *brief = "La reunió és dilluns a les deu.\nSi us plau, porta l'informe.";
    EXPECT_EQ(translated(apertium, "catalan", brief).text.toStdString(), brief);
    EXPECT_EQ(apertium.arguments(), "");
}

TEST(Translate, AStopEndsApertium)
{
    const FakeApertium apertium({"eng-spa"}, "; sleep 60 | sleep 60");
    const OfflineEngine engine(apertium.paths());
    std::stop_source stop;
    QElapsedTimer timer;
    timer.start();
    OfflineAnswer answer;
    std::thread translating([&] {
        answer =
            engine.answer(u"spanish"_qs, u"This is the house that we saw."_qs, stop.get_token());
    });
    while (apertium.arguments().empty() && !timer.hasExpired(60'000))
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    timer.restart();
    stop.request_stop();
    translating.join();
    EXPECT_FALSE(answer.supported);
    EXPECT_LT(timer.elapsed(), 15'000) << "Apertium itself is given up after 20 seconds";
}

} // namespace
