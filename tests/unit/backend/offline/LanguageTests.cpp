// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "TestData.h"

#include "backend/offline/language/LanguageModel.h"
#include "backend/offline/language/Tagger.h"
#include "backend/offline/words/LanguageDetector.h"
#include "backend/offline/words/Lexicon.h"

namespace
{

using namespace offline;

TEST(LanguageModel, PrefersWhatPeopleSay)
{
    const LanguageModel model;
    const auto score = [&](std::initializer_list<QStringView> words) {
        std::vector<LanguageModel::WordId> ids(2, model.sentenceStart());
        for (const QStringView word : words)
            ids.push_back(model.idOf(word));
        return model.score(ids);
    };
    EXPECT_GT(score({u"thank", u"you", u"very", u"much"}),
              score({u"thank", u"you", u"very", u"many"}));
    EXPECT_GT(score({u"a", u"piece", u"of", u"cake"}), score({u"a", u"peace", u"of", u"cake"}));
    EXPECT_EQ(model.idOf(u"qwertzuiop"), LanguageModel::unknown);
    EXPECT_NE(model.idOf(u"don't"), LanguageModel::unknown);
    // A probability is one: over all that can follow it does not exceed 1.
    EXPECT_LE(model.probability(model.idOf(u"you"), model.idOf(u"thank"), model.sentenceStart()),
              0.01F);
    EXPECT_GT(model.probability(model.idOf(u"you"), model.idOf(u"thank"), model.sentenceStart()),
              -0.5F);
}

TEST(Tagger, TellsNounsFromVerbsByTheirPlace)
{
    const Lexicon lexicon{QStringLiteral("/usr/share/hunspell")};
    const LanguageDetector detector;
    const Tagger tagger;
    const auto tags = [&](const char *text) {
        const QString sentence = QString::fromUtf8(text);
        return tagger.tags(Document(sentence, lexicon, detector));
    };
    using Tags = std::vector<Tag>;
    EXPECT_EQ(tags("They run to the house."),
              (Tags{Tag::Prp, Tag::Vbp, Tag::To, Tag::Dt, Tag::Nn}));
    EXPECT_EQ(tags("The run was long."), (Tags{Tag::Dt, Tag::Nn, Tag::Vbd, Tag::Jj}));
    EXPECT_EQ(tags("We can see the reports."),
              (Tags{Tag::Prp, Tag::Md, Tag::Vb, Tag::Dt, Tag::Nns}));
    EXPECT_EQ(tags("Das ist nicht mein Haus und nicht dein Haus.").front(), Tag::Punc);
}

} // namespace
