// The one HTTPS call of the program, over WinHTTP.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

struct HttpsEndpoint {
    std::wstring host;
    std::uint16_t port = 443;
};

/// Sends one request to the signature server, a host that the build names, on port 443 and returns
/// the body of the answer. A `body` that is not empty goes out as JSON.
///
/// Empty means failure of any kind: no connection, a status other than 200, an answer that breaks
/// off. Resolving, connecting, sending and receiving may take 5 seconds each, and the caller gets
/// its answer within 30 seconds whatever the server does. An answer of more than 2 MiB is cut at
/// the last read below that. Certificates are not judged, on purpose: the service must also be
/// reachable behind proxies that open the encryption, and an answer is never trusted.
std::string HttpsRequest(std::wstring_view method, std::wstring_view path, std::string_view body);

/// The same to any server.
std::string HttpsRequestTo(const HttpsEndpoint& endpoint, std::wstring_view method,
                           std::wstring_view path, std::string_view body);
