// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QList>
#include <QRect>
#include <QWidget>

#include <functional>

namespace platform
{
class Workspace;
}

/// A small panel beside the floating button: a line that goes by itself, or actions to choose from.
/// Like the button, it never takes the keyboard. Main thread.
class SidePanel : public QWidget
{
    Q_OBJECT

public:
    struct Action {
        QString title;
        std::function<void()> run;
    };

    /// Says `sentence` for four seconds below, or above, `button`, which is on the screen in
    /// points with the origin at the top left. It deletes itself.
    static SidePanel *say(platform::Workspace &workspace, const QString &sentence,
                          const QRect &button);

    /// Offers `actions` there until one is chosen, Escape is pressed or the user clicks elsewhere.
    static SidePanel *offer(platform::Workspace &workspace, const QList<Action> &actions,
                            const QRect &button);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    explicit SidePanel(platform::Workspace &workspace);
    void placeAt(const QRect &button);
};
