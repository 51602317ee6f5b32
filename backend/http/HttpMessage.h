// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>

/// A request as the server's routes see it. A body is read from the
/// connection and dropped: nothing that this server answers needs one.
struct HttpRequest {
    /// In upper case, whatever the client sent.
    QByteArray method;
    /// The request target of RFC 9112 §3.2, undecoded.
    QByteArray target;
    /// How many Host lines there were; RFC 9112 §3.2 asks for exactly one.
    int hostCount = 0;
    QByteArray host;
    QByteArray authorization;
    QByteArray origin;
    QByteArray referer;
    QByteArray fetchSite;
    /// The client speaks HTTP/1.1 and so takes an answer in chunks.
    bool takesChunks = false;
    /// The client asked for the marks of LiveBody ("Prefer: live", RFC 7240).
    bool prefersLive = false;
};

using HttpHeaders = QList<QPair<QByteArray, QByteArray>>;

struct HttpResponse {
    int status = 200;
    /// Plain text in UTF-8.
    QByteArray body;
    HttpHeaders headers = {};
    QByteArray type = "text/plain; charset=utf-8";
};

/// A further piece of an answer with status 200 that is still being written.
struct HttpPiece {
    /// UTF-8, whole characters.
    QByteArray text;
    /// The pieces before this one are withdrawn.
    bool startsOver = false;
};
