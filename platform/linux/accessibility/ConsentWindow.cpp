// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/accessibility/ConsentWindow.h"

#include "platform/linux/atspi/AtspiBus.h"

#include <QApplication>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QProcess>
#include <QShortcut>
#include <QVBoxLayout>

namespace platform::linux_
{

namespace
{

constexpr int iconSize = 40;

// The colours of the application's other windows, whatever the desktop's theme.
const QColor accent(0x6c, 0x3d, 0xf5);
const QColor on = accent;
const QColor off(0x8e, 0x8e, 0x93);
const QColor warning(0xb3, 0x26, 0x1e);

/// The application's own typeface, where it has been registered; else the desktop's. Sizes are in
/// points that follow the screen's scale, so that the texts keep their proportions at every one.
QFont windowFont(int size, QFont::Weight weight = QFont::Normal)
{
    QFont font(QStringLiteral("Manrope"));
    font.setPixelSize(size);
    font.setWeight(weight);
    return font;
}

QPalette windowPalette()
{
    QPalette palette(QColor(0xe5, 0xe5, 0xe5), Qt::white);
    palette.setColor(QPalette::WindowText, Qt::black);
    palette.setColor(QPalette::Text, Qt::black);
    palette.setColor(QPalette::Base, QColor(0xf9, 0xf9, 0xf9));
    palette.setColor(QPalette::Highlight, accent);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

/// A check box that looks like a switch.
class Switch : public QCheckBox
{
public:
    using QCheckBox::QCheckBox;

    QSize sizeHint() const override { return {46, 26}; }

protected:
    bool hitButton(const QPoint &position) const override { return rect().contains(position); }

    void keyPressEvent(QKeyEvent *event) override
    {
        const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
        if (!isReturn)
            QCheckBox::keyPressEvent(event);
        else if (!event->isAutoRepeat())
            click();
    }

    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        QRectF track(0, 0, 46, 26);
        track.moveCenter(QRectF(rect()).center());
        track.adjust(1, 1, -1, -1);
        painter.setPen(hasFocus() ? QPen(Qt::black, 2) : QPen(Qt::NoPen));
        painter.setBrush(isChecked() ? on : off);
        painter.drawRoundedRect(track, track.height() / 2, track.height() / 2);
        QRectF knob(0, 0, track.height() - 4, track.height() - 4);
        knob.moveTop(track.top() + 2);
        if (isChecked() != isRightToLeft())
            knob.moveRight(track.right() - 2);
        else
            knob.moveLeft(track.left() + 2);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::white);
        painter.drawEllipse(knob);
    }
};

/// The rounded frame around an application's entry. It is painted here, because a style sheet would
/// give its labels the colours of the desktop's theme.
class Card : public QWidget
{
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent *) override
    {
        constexpr qreal radius = 16;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(QColor(0xee, 0xf0, 0xe6), 1));
        painter.setBrush(QColor(0xf9, 0xf9, 0xf9));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    }
};

/// GNOME and its relatives keep the switch among their settings and set it again at login. Absent
/// schemas and programs are no failure: then the session's own switch is all there is.
void keepInDesktopSettings()
{
    QProcess::startDetached(QStringLiteral("gsettings"),
                            {QStringLiteral("set"), QStringLiteral("org.gnome.desktop.interface"),
                             QStringLiteral("toolkit-accessibility"), QStringLiteral("true")});
}

QPixmap applicationIcon(qreal scale)
{
    const QIcon icon = QApplication::windowIcon();
    if (!icon.isNull())
        return icon.pixmap(QSize(iconSize, iconSize), scale);
    QPixmap pixmap(QSize(iconSize, iconSize) * scale);
    pixmap.setDevicePixelRatio(scale);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x3b, 0x3f, 0x9c));
    painter.drawRoundedRect(QRectF(0, 0, iconSize, iconSize), 9, 9);
    QFont font;
    font.setPixelSize(24);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QRectF(0, 0, iconSize, iconSize), Qt::AlignCenter, QStringLiteral("Q"));
    return pixmap;
}

} // namespace

ConsentWindow::ConsentWindow(AtspiBus &bus, bool allowed)
    : m_bus(bus)
{
    setWindowTitle(tr("Accessibility"));
    setPalette(windowPalette());
    setAutoFillBackground(true);
    setFont(windowFont(16));
    auto *escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    connect(escape, &QShortcut::activated, this, &QWidget::close);

    auto *title = new QLabel(tr("Accessibility"));
    title->setFont(windowFont(25, QFont::Bold));

    auto *explanation = new QLabel(
        tr("Applications in this list may see which text field you are working in, and read and "
           "replace the text in it. Passwords are never read."));
    explanation->setWordWrap(true);

    auto *icon = new QLabel;
    icon->setPixmap(applicationIcon(devicePixelRatioF()));
    icon->setAccessibleName(tr("Icon of Quillet"));
    auto *name = new QLabel(QStringLiteral("Quillet"));
    name->setFont(windowFont(18, QFont::DemiBold));
    m_state = new QLabel;
    m_state->setFont(windowFont(14));
    m_state->setWordWrap(true);
    m_state->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto *consent = new Switch;
    consent->setAccessibleName(QStringLiteral("Quillet"));
    consent->setChecked(allowed);
    m_switch = consent;

    auto *texts = new QVBoxLayout;
    texts->setSpacing(3);
    texts->addWidget(name);
    texts->addWidget(m_state);

    auto *row = new Card;
    auto *rowLayout = new QHBoxLayout(row);
    rowLayout->setContentsMargins(16, 14, 16, 14);
    rowLayout->setSpacing(14);
    rowLayout->addWidget(icon, 0, Qt::AlignTop);
    rowLayout->addLayout(texts, 1);
    rowLayout->addWidget(consent, 0, Qt::AlignVCenter);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(40, 32, 40, 40);
    layout->setSpacing(12);
    layout->addWidget(title);
    layout->addWidget(explanation);
    layout->addSpacing(4);
    layout->addWidget(row);
    setFixedWidth(520);

    connect(consent, &QCheckBox::toggled, this, &ConsentWindow::onToggled);
    connect(&m_bus, &AtspiBus::changed, this, &ConsentWindow::showState);
    consent->setFocus();
    showState();
    fitHeight();
}

void ConsentWindow::onToggled(bool allowed)
{
    if (allowed) {
        m_bus.setEnabled(true);
        keepInDesktopSettings();
    }
    Q_EMIT consentChanged(allowed);
    showState();
}

void ConsentWindow::showState()
{
    QString text;
    bool wrong = false;
    if (m_bus.service() == AtspiBus::Service::Missing) {
        text = tr("The accessibility service of this desktop is not running, so this permission "
                  "has no effect. Install the package at-spi2-core and log in again.");
        wrong = true;
    } else if (!m_switch->isChecked()) {
        text = tr("Off. Quillet does not see other applications.");
    } else if (m_bus.service() == AtspiBus::Service::Unknown || !m_bus.isConnected()) {
        text = tr("On. Connecting to the accessibility service…");
    } else if (!m_bus.isEnabled()) {
        text = tr("On, but accessibility is switched off for this desktop. Switch this off and on "
                  "again.");
        wrong = true;
    } else {
        text = tr("On. Applications that were started before may have to be started again.");
    }
    m_state->setText(text);
    QPalette palette = windowPalette();
    if (wrong)
        palette.setColor(QPalette::WindowText, warning);
    m_state->setPalette(palette);
}

bool ConsentWindow::event(QEvent *event)
{
    const bool handled = QWidget::event(event);
    // The window is as high as what it has to say. A text inside the row changes what the row wants
    // only once the row's own layout has been done, and this is the window's turn after that.
    if (event->type() == QEvent::LayoutRequest)
        fitHeight();
    return handled;
}

void ConsentWindow::fitHeight()
{
    setFixedHeight(layout()->totalHeightForWidth(width()));
}

} // namespace platform::linux_
