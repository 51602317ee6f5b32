// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/popup/RequestSentences.h"

#include "commands/Catalogue.h"
#include "quillet/widgets/Localisation.h"

bool worksOnText(const QString &command)
{
    return commandKind(command) != CommandKind::More;
}

QString failureSentence(const BackendFailure &failure)
{
    const auto *reason = std::get_if<QString>(&failure);
    const QString what = reason
                             ? localized(*reason)
                             : localized("The writing service could not be asked, or said nothing");
    return localized("%1. Your text is unchanged. Press \"reload\" to try again.")
        .arg(what.endsWith(u'.') ? what.chopped(1) : what);
}
