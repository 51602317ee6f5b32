// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/shell/Feedback.h"

QUrl feedbackUrl(const QString &address)
{
    // What a query may hold as it stands (RFC 3986, 3.4).
    const QByteArray subject =
        QUrl::toPercentEncoding(QStringLiteral("Quillet mac feedback"), "!$&'()*+,-./:;=?@_~");
    return QUrl(QStringLiteral("mailto:") + address + QStringLiteral("?subject=") +
                    QString::fromLatin1(subject),
                QUrl::StrictMode);
}

QString feedbackAddress()
{
    return QStringLiteral(QUILLET_FEEDBACK_ADDRESS);
}
