// SPDX-License-Identifier: MIT
#pragma once

// Internal to the library: which addresses the icon cache goes to.

#include <QString>
#include <QUrl>

/**
 * The icon cache's rules for addresses. An icon address comes from a web page, so
 * it must never make the cache reach what the page itself could not: another
 * machine's file share, or a service on the user's own machine or network.
 */
class IconAddressPolicy
{
public:
    IconAddressPolicy() = delete;

    /** Longest address accepted, in characters. */
    static constexpr int MaxUrlLength = 8192;

    /** @return @p text as an http or https URL with a host, or an invalid URL. */
    static QUrl ParseWebUrl(const QString &text);
    /** @return true for an http or https URL with a host. */
    static bool IsWebUrl(const QUrl &url);

    /**
     * @return the local file that @p text names (an absolute path or a file: URL),
     * or an empty string when it names none or names a file on another machine:
     * a file: URL with a host, or a path in the form of a network share ("//host/",
     * "\\host\"), which the system would look up over the network.
     */
    static QString LocalFile(const QString &text);

    /**
     * @return true when a download at @p from may follow a redirect to @p to: only
     * to http or https, never from https down to http, and never from a public host
     * to a private one (IsPrivateHost()). Between private hosts, or from a private
     * host to a public one, redirects are followed.
     */
    static bool IsRedirectAllowed(const QUrl &from, const QUrl &to);

    /**
     * @return true for a host on the user's own machine or network: loopback,
     * link-local, private (10/8, 172.16/12, 192.168/16, 100.64/10 shared, fc00::/7
     * unique local), unspecified, multicast or broadcast addresses, in any of their
     * written forms (IPv4-mapped IPv6 included), and names that only a local
     * resolver knows ("localhost", names under .localhost, .local, .internal,
     * .home.arpa, .lan, and names without a dot).
     */
    static bool IsPrivateHost(const QString &host);
};
