// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/words/LanguageDetector.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>
#include <stop_token>

namespace offline
{

/// Translates between English, Spanish, Catalan, Italian, Portuguese and French
/// with an installed Apertium, through languages in between where no pair leads
/// straight. The text reaches the child process through its standard input
/// only. Constant after construction; any thread may use it.
class Translator
{
public:
    struct Result {
        bool supported = false;
        QString text;        ///< the translation, or one sentence why there is none
        QString remark = {}; ///< a sentence on how far to trust it, if there is one to say
    };

    /// `program` is Apertium's, `modes` the folder of its modes. `detector` must
    /// outlive the translator.
    Translator(QString program, const QString &modes, const LanguageDetector &detector);

    static bool offers(const QString &language);

    /// Blocks while Apertium works, at most 20 seconds a step. After a stop is
    /// requested it ends Apertium and has no translation.
    Result translate(const QString &text, const QString &language,
                     const std::stop_token &stop = {}) const;

private:
    static QStringList route(const QString &from, const QString &to, const QSet<QString> &modes);
    std::optional<QString> run(const QString &mode, const QString &text,
                               const std::stop_token &stop) const;

    QString m_program;
    QSet<QString> m_modes; ///< installed
    const LanguageDetector &m_detector;
};

} // namespace offline
