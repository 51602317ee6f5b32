// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/http/RequestParser.h"

#include <boost/asio/buffer.hpp>
#include <boost/beast/http/empty_body.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/rfc7230.hpp>

namespace beast = boost::beast;
namespace http = boost::beast::http;

namespace
{

/// Below the 64 KiB that the parser can keep of one field.
constexpr quint32 maxFields = 60 * 1024;
constexpr quint64 maxBody = 32 * 1024 * 1024;

/// A body that is counted and dropped.
struct DroppedBody {
    struct value_type {
    };
    struct reader {
        template <bool isRequest, class Fields>
        reader(http::header<isRequest, Fields> &, value_type &)
        {
        }
        void init(const boost::optional<std::uint64_t> &, beast::error_code &error) { error = {}; }
        template <class Buffers> std::size_t put(const Buffers &buffers, beast::error_code &error)
        {
            error = {};
            return boost::asio::buffer_size(buffers);
        }
        void finish(beast::error_code &error) { error = {}; }
    };
};

QByteArray bytes(beast::string_view view)
{
    return QByteArray(view.data(), qsizetype(view.size()));
}

} // namespace

struct RequestParser::Private {
    http::request_parser<DroppedBody> parser;
    int status = 0;
    QByteArray sentence;
    bool continueTaken = false;
    /// How much of the buffer has been searched for the end of the request line.
    qsizetype searched = 0;
    qsizetype lineEnd = -1;

    /// Looks at the bytes of the header section, which the parser leaves in the
    /// buffer until they are complete.
    int excess(const QByteArray &buffer)
    {
        if (lineEnd < 0) {
            lineEnd = buffer.indexOf("\r\n", std::max<qsizetype>(0, searched - 1));
            searched = buffer.size();
        }
        if ((lineEnd < 0 ? buffer.size() : lineEnd) > RequestParser::maxRequestLine)
            return 414;
        if (lineEnd < 0 || buffer.size() - lineEnd <= maxFields)
            return 0;
        const auto end = buffer.indexOf("\r\n\r\n", lineEnd);
        return end < 0 || end - lineEnd > maxFields ? 431 : 0;
    }

    Outcome fail(int code, const char *text)
    {
        status = code;
        sentence = text;
        return Outcome::Failed;
    }
};

RequestParser::RequestParser()
    : d(std::make_unique<Private>())
{
    d->parser.header_limit(quint32(RequestParser::maxRequestLine) + maxFields);
    d->parser.body_limit(maxBody);
    // Stops after the header section, so that a body can be refused before it is parsed.
    d->parser.eager(false);
}

RequestParser::~RequestParser() = default;

RequestParser::Outcome RequestParser::feed(QByteArray &buffer)
{
    const int excess = d->parser.is_header_done() ? 0 : d->excess(buffer);
    if (excess == 414) {
        return d->fail(414, "The text is too long to be sent in one request. Shorten it, or use "
                            "the command on a part of it.");
    }
    if (excess == 431)
        return d->fail(431, "The request's header fields are too long.");
    qsizetype taken = 0;
    beast::error_code error;
    try {
        while (!error && taken < buffer.size() && !d->parser.is_done()) {
            const auto used = d->parser.put(
                boost::asio::buffer(buffer.constData() + taken, std::size_t(buffer.size() - taken)),
                error);
            taken += qsizetype(used);
            if (!error && d->parser.is_header_done() && d->parser.chunked())
                return d->fail(411, "A body needs a Content-Length.");
            if (used == 0)
                break;
        }
    } catch (const std::exception &) {
        // The parser throws for a single field above its own bound.
        return d->fail(431, "The request's header fields are too long.");
    }
    buffer.remove(0, taken);
    if (error == http::error::header_limit)
        return d->fail(431, "The request's header fields are too long.");
    if (error == http::error::body_limit)
        return d->fail(413, "The request's body is too long.");
    if (error && error != http::error::need_more)
        return d->fail(400, "This is not an HTTP request that the server understands.");
    return d->parser.is_done() ? Outcome::Complete : Outcome::NeedMore;
}

int RequestParser::failureStatus() const
{
    return d->status;
}

QByteArray RequestParser::failureSentence() const
{
    return d->sentence;
}

bool RequestParser::takeExpectContinue()
{
    if (d->continueTaken || !d->parser.is_header_done() || d->parser.is_done())
        return false;
    d->continueTaken = true;
    return beast::iequals(d->parser.get()[http::field::expect], "100-continue");
}

bool RequestParser::hasHead() const
{
    return d->parser.is_header_done();
}

bool RequestParser::keepAlive() const
{
    return d->parser.keep_alive();
}

HttpRequest RequestParser::request() const
{
    const auto &message = d->parser.get();
    HttpRequest request;
    request.method = bytes(message.method_string()).toUpper();
    request.target = bytes(message.target());
    request.hostCount = int(message.count(http::field::host));
    request.host = bytes(message[http::field::host]);
    request.authorization = bytes(message[http::field::authorization]);
    request.origin = bytes(message[http::field::origin]);
    request.referer = bytes(message[http::field::referer]);
    request.fetchSite = bytes(message["Sec-Fetch-Site"]);
    request.takesChunks = message.version() >= 11;
    request.prefersLive = http::token_list(message["Prefer"]).exists("live");
    return request;
}
