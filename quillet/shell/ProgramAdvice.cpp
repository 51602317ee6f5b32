// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/shell/ProgramAdvice.h"

#include "quillet/widgets/Localisation.h"

#include <QSettings>
#include <QStringList>

namespace
{

const QString mentionedKey = QStringLiteral("programsMentioned");

} // namespace

ProgramAdvice::ProgramAdvice(platform::ProgramAccess *access, Notice &notice, QSettings &store)
    : m_access(access)
    , m_notice(notice)
    , m_store(store)
{
}

bool ProgramAdvice::wasMentioned(const QString &key)
{
    QStringList mentioned = m_store.value(mentionedKey).toStringList();
    if (mentioned.contains(key))
        return true;
    mentioned.append(key);
    m_store.setValue(mentionedKey, mentioned);
    return false;
}

void ProgramAdvice::mention(std::int32_t pid, const QString &advice)
{
    const auto program = m_access ? m_access->programOf(pid) : std::nullopt;
    if (!program) {
        if (!wasMentioned(advice))
            m_notice.mention(advice);
        return;
    }
    if (program->isOn) {
        if (m_startedWithout.contains(program->entry))
            return;
        m_startedWithout.insert(program->entry);
        m_notice.mention(
            localized("%1 still shows Quillet only its window, because it was started before its "
                      "switch was turned on, or not from the menu. Quit it and start it from the "
                      "menu.")
                .arg(program->name));
        return;
    }
    if (wasMentioned(program->entry))
        return;
    m_notice.mention(localized("%1 shows Quillet only its window. A switch in its menu entry lets "
                               "Quillet see the texts that you write in it.")
                         .arg(program->name),
                     {localized("Turn on for %1").arg(program->name),
                      [this, program = *program, pid] { turnOn(program, pid); }});
}

void ProgramAdvice::turnOn(const platform::ProgramAccess::Program &program, std::int32_t pid)
{
    const QString failure = m_access->turnOn(program.entry, pid);
    if (!failure.isEmpty()) {
        m_notice.tell(failure);
        return;
    }
    m_notice.mention(
        localized("%1 shows its texts from its next start on. The settings take this back.")
            .arg(program.name),
        {localized("Start again when I quit it"), [this, program, pid] {
             m_access->startAfterQuit(program.entry, pid, [this, program](bool started) {
                 if (!started)
                     m_notice.mention(localized("%1 was not started again. Start it from the menu.")
                                          .arg(program.name));
             });
         }});
}
