// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "NetUtils.h"

#include "Columns.h"
#include "ProcessRandom.h"
#include "Text.h"

#include <QHostAddress>
#include <QNetworkInterface>
#include <QtTest>

#ifdef Q_OS_LINUX
#include <arpa/inet.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <thread>
#endif

namespace {

const auto unicode = QRegularExpression::UseUnicodePropertiesOption;

/// The result of \a rx itself.
bool matches(const QRegularExpression& rx, const QString& s)
{
    return rx.match(s).hasMatch();
}

/// Counts the texts for which a check agrees with the pattern that it replaces.
struct Agreement
{
    QRegularExpression pattern;
    bool (*check)(const QString&) = nullptr;
    int accepted = 0;
    int rejected = 0;
    QString different; ///< a text with different results

    void operator()(const QString& s)
    {
        const bool expected = matches(pattern, s);
        ++(expected ? accepted : rejected);
        if (check(s) != expected)
            different = s;
    }
};

/// A text of \a minimum to \a maximum characters from \a alphabet.
QString randomText(const QString& alphabet, int minimum, int maximum)
{
    QString string;
    for (int size = minimum + processRandom() % (maximum - minimum + 1); size > 0; --size)
        string += alphabet.at(processRandom() % alphabet.size());
    return string;
}

/// Calls \a function with every text of up to \a maximum characters from \a alphabet.
template <typename Function>
void forEachText(const QString& alphabet, int maximum, Function function)
{
    QString string;
    QVector<int> letters;
    for (;;) {
        function(string);
        int position = 0;
        while (position < letters.size() && ++letters[position] == alphabet.size())
            letters[position++] = 0;
        if (position == letters.size()) {
            if (position == maximum)
                return;
            letters.append(0);
        }
        string.resize(letters.size());
        for (int i = 0; i < letters.size(); ++i)
            string[i] = alphabet.at(letters.at(i));
    }
}

#ifdef Q_OS_LINUX
/// Assigns the IPv4 \a address to the interface \a name and brings it up.
bool addAddress(const char* name, const char* address)
{
    const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ifreq request{};
    std::strncpy(request.ifr_name, name, IFNAMSIZ - 1);
    sockaddr_in in{};
    in.sin_family = AF_INET;
    inet_pton(AF_INET, address, &in.sin_addr);
    std::memcpy(&request.ifr_addr, &in, sizeof in);
    bool done = ioctl(socket, SIOCSIFADDR, &request) == 0;
    request.ifr_flags = IFF_UP | IFF_RUNNING;
    done = ioctl(socket, SIOCSIFFLAGS, &request) == 0 && done;
    close(socket);
    return done;
}
#endif

} // namespace

class tst_NetUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void patterns();
    void webAddresses_data();
    void webAddresses();
    void webAddressesAsThePattern();
    void emailAddresses_data();
    void emailAddresses();
    void emailAddressesAsThePattern();
    void emailAddressLength();
    void emailAddressLists_data();
    void emailAddressLists();
    void hostileTexts_data();
    void hostileTexts();
    void mainIpAddress();
    void mainIpAddressByRule();
};

void tst_NetUtils::patterns()
{
    const QString web =
        text("^(https?:\\/\\/)%1(([\\.\\d\\w-]+)|((\\d{1,3}\\.){3}\\d{1,3}))(:\\d{1,5})?"
             "(/[\\~\\/\\w\\.-]*)*\\/?$");
    QCOMPARE(NetUtils::webAddressRx(true).pattern(), QString(web).remove(text("%1")));
    QCOMPARE(NetUtils::webAddressRx(false).pattern(), web.arg(QLatin1Char('?')));

    const QString address = text("([\\d\\w]+([\\d\\w]*[-._+])*[\\d\\w]+@[\\d\\w]+([-.]["
                                 "\\d\\w]+)*([\\d\\w]*[.])[\\w]{2,12})");
    QCOMPARE(NetUtils::emailAddressRx().pattern(), text("^%1$").arg(address));
    QCOMPARE(NetUtils::emailAddressMultiRx().pattern(),
             text("^(%1)(\\s*[,;]\\s*(%1))*$").arg(address));

    for (const QRegularExpression& rx :
         {NetUtils::webAddressRx(true), NetUtils::webAddressRx(false), NetUtils::emailAddressRx(),
          NetUtils::emailAddressMultiRx()}) {
        QVERIFY(rx.isValid());
        QCOMPARE(rx.patternOptions(), QRegularExpression::PatternOptions(unicode));
    }
}

void tst_NetUtils::webAddresses_data()
{
    // withScheme: the result if the scheme is required
    // optional: the result if it is not
    const auto table = columns<QString, bool, bool>("s", "withScheme", "optional");
    const auto row = [&](const char* s, bool withScheme, bool optional) {
        table(*s ? s : "empty", text(s), withScheme, optional);
    };
    row("http://example.com", true, true);
    row("https://example.com", true, true);
    row("https://example.com/", true, true);
    row("http://www.example.com/path/file.html", true, true);
    row("http://example.com:8080", true, true);
    row("http://example.com:8080/", true, true);
    row("http://example.com:1/a/b/c/", true, true);
    row("http://example.com:99999", true, true); // any five digits
    row("http://192.168.0.1", true, true);
    row("http://192.168.0.1:80/x", true, true);
    row("http://999.999.999.999", true, true); // the numbers are not checked
    row("http://localhost", true, true);
    row("http://a", true, true);
    row("http://-", true, true);
    row("http://a..b", true, true);
    row("http://a_b.c", true, true);
    row("http://example.com/~user/", true, true);
    row("http://example.com//double//", true, true);
    row("http://example.com/a.b-c_d~e", true, true);
    row("http://example.com/.", true, true);
    row("https://exämple.de/straße", true, true);
    row("http://例え.jp/パス", true, true);
    row("http://пример.рф/путь/", true, true);
    row("http://παράδειγμα.ελ", true, true);
    row("http://مثال.مصر/٣", true, true);
    row("http://example.com\n", true, true); // "$" also matches before a final line feed
    // The scheme is missing.
    row("example.com", false, true);
    row("www.example.com", false, true);
    row("192.168.0.1:8080/a", false, true);
    row("exämple.de/straße", false, true);
    row("localhost", false, true);
    // Not an address in either case.
    row("", false, false);
    row("http://", false, false);
    row("https://", false, false);
    row("https:///path", false, false);
    row("http:/example.com", false, false);
    row("http//example.com", false, true); // a host called "http", and a path
    row("HTTP://example.com", false, false);
    row("Https://example.com", false, false);
    row("httpss://example.com", false, false);
    row("ftp://example.com", false, false);
    row("mailto:ab@example.com", false, false);
    row("javascript:alert(1)", false, false);
    row("file:///tmp/x", false, false);
    row(" http://example.com", false, false);
    row("http://example.com ", false, false);
    row("http://exa mple.com", false, false);
    row("http://example.com/a b", false, false);
    row("http://example.com/?q=1", false, false);
    row("http://example.com?q=1", false, false);
    row("http://example.com/#a", false, false);
    row("http://example.com/a%20b", false, false);
    row("http://example.com/a,b", false, false);
    row("http://example.com/(x)", false, false);
    row("http://example.com/a:b", false, false);
    row("http://example.com:", false, false);
    row("http://example.com:/", false, false);
    row("http://example.com:123456", false, false);
    row("http://example.com:80a", false, false);
    row("http://example.com:80:80", false, false);
    row("http://user@example.com", false, false);
    row("http://user:pw@example.com", false, false);
    row("http://[::1]/", false, false);
    row("http://~user", false, false);
    row("http://a,b", false, false);
    row("http://例え。jp", false, false); // the ideographic full stop is not a letter
    row("http://example.com\n\n", false, false);
    row("http://example.com\nx", false, false);
    row("http://example.com\r\n", false, false);
    row("http://😀.com", false, false);
}

void tst_NetUtils::webAddresses()
{
    QFETCH(QString, s);
    QTEST(NetUtils::checkInternetAdress(s), "withScheme");
    QTEST(matches(NetUtils::webAddressRx(true), s), "withScheme");
    QTEST(matches(NetUtils::webAddressRx(false), s), "optional");
}

/// The check does not use the pattern; on every text short enough for the pattern the results are
/// the same.
void tst_NetUtils::webAddressesAsThePattern()
{
    Agreement check;
    check.pattern = NetUtils::webAddressRx(true);
    check.check = NetUtils::checkInternetAdress;
    forEachText(text("a1.:/-~!\n"), 5, [&](const QString& s) { check(text("http://") + s); });
    forEachText(text("htps:/"), 7, [&](const QString& s) { check(s); });
    seedProcessRandom(1);
    const QString alphabet = text("aaZ012éé例٣_-...:::////~?%@ \n\u0301\u20ac½") + QChar(0xd835)
        + QChar(0xdcd0); // a mathematical letter, whole and split
    for (int i = 0; i < 50000; ++i) {
        const QString s = randomText(alphabet, 0, 14);
        check(text("http://") + s);
        check(text("https://a") + s);
        check(s);
    }
    QCOMPARE(check.different, QString());
    QVERIFY(check.accepted > 10000);
    QVERIFY(check.rejected > 10000);
}

void tst_NetUtils::emailAddresses_data()
{
    const auto row = columns<QString, bool>("s", "valid");
    const auto accepted = [&](const char* s) { row(s, text(s), true); };
    const auto rejected = [&](const char* s) { row(*s ? s : "empty", text(s), false); };
    accepted("ab@example.com");
    accepted("john.doe@example.com");
    accepted("john_doe@example.com");
    accepted("john-doe@example.com");
    accepted("john+tag@example.com");
    accepted("first.last+tag_2@sub.example.co.uk");
    accepted("AB@EXAMPLE.COM");
    accepted("12@34.56");
    accepted("a1@b2.c3");
    accepted("ab@a-b.fr");
    accepted("ab@a-b-c.d-e.fr");
    accepted("ab@x.fr");
    accepted("ab@x.museum");
    accepted("ab@x.abcdefghijkl"); // a last label of twelve
    accepted("ab@10.20.30.40");
    accepted("ab@ex_ample.com");
    accepted("ab@example.c_m");
    accepted("__@_.__"); // "_" is a word character
    accepted("a..b@example.com"); // separators may follow one another before the "@"
    accepted("a.-+_b@example.com");
    accepted("jean-rené.dupont@exemple.fr");
    accepted("用户@例子.公司");
    accepted("иван.петров@пример.рф");
    accepted("jürgen@müller-straße.de");
    accepted("χρήστης@παράδειγμα.ελ");
    accepted("ab@example.com\n"); // "$" also matches before a final line feed

    rejected("");
    rejected("ab");
    rejected("ab@");
    rejected("@example.com");
    rejected("a@example.com"); // one character before the "@"
    rejected("é@exemple.fr");
    rejected("ab@example");
    rejected("ab@example.c"); // a last label of one character
    rejected("ab@example.abcdefghijklm"); // and of thirteen
    rejected("ab@1.2.3.4");
    rejected("ab@example.com.");
    rejected("ab@.example.com");
    rejected("ab@.com");
    rejected("ab@example..com");
    rejected("ab@example.-com");
    rejected("ab@-example.com");
    rejected("ab@example-.com");
    rejected("ab@example--x.com");
    rejected("ab@example.co-m");
    rejected("ab@example-com");
    rejected(".ab@example.com");
    rejected("ab.@example.com");
    rejected("-ab@example.com");
    rejected("ab-@example.com");
    rejected("+ab@example.com");
    rejected("ab+@example.com");
    rejected("ab@exa+mple.com");
    rejected("a b@example.com");
    rejected("ab@ex ample.com");
    rejected(" ab@example.com");
    rejected("ab@example.com ");
    rejected("ab@@example.com");
    rejected("ab@cd@example.com");
    rejected("ab,cd@example.com");
    rejected("ab@example.com,cd@example.com");
    rejected("ab@example,com");
    rejected("ab@exam/ple.com");
    rejected("\"ab\"@example.com");
    rejected("ab@[1.2.3.4]");
    rejected("<ab@example.com>");
    rejected("mailto:ab@example.com");
    rejected("o'brien@example.com");
    rejected("ab@example.com\n\n");
    rejected("ab\n@example.com");
    rejected("ab😀@example.com");
}

void tst_NetUtils::emailAddresses()
{
    QFETCH(QString, s);
    QTEST(NetUtils::checkEmailAdress(s), "valid");
    QTEST(matches(NetUtils::emailAddressRx(), s), "valid");
}

void tst_NetUtils::emailAddressesAsThePattern()
{
    Agreement check;
    check.pattern = NetUtils::emailAddressRx();
    check.check = NetUtils::checkEmailAdress;
    forEachText(text("a_.-@"), 8, [&](const QString& s) { check(s); });
    // Each side of the "@" by itself, longer than both together can be.
    forEachText(text("aé_.+ "), 6, [&](const QString& s) { check(s + text("@x.fr")); });
    forEachText(text("aé_.-+\n"), 6, [&](const QString& s) { check(text("ab@") + s); });
    seedProcessRandom(1);
    const QString alphabet =
        text("aaZ012éé例٣__--..++ ,@\n\u0301\u20ac½") + QChar(0xd835) + QChar(0xdcd0);
    const QString likely = text("aé1_-.");
    for (int i = 0; i < 50000; ++i) {
        check(randomText(alphabet, 0, 8) + QLatin1Char('@') + randomText(alphabet, 0, 12));
        check(randomText(likely, 1, 6) + QLatin1Char('@') + randomText(likely, 1, 20));
        check(randomText(likely, 1, 6) + text("@a.") + randomText(likely, 10, 14));
    }
    QCOMPARE(check.different, QString());
    QVERIFY(check.accepted > 10000);
    QVERIFY(check.rejected > 10000);
}

void tst_NetUtils::emailAddressLength()
{
    const QString domain = text("@example.com"); // 12 characters
    QVERIFY(NetUtils::checkEmailAdress(QString(242, QLatin1Char('a')) + domain));
    QVERIFY(!NetUtils::checkEmailAdress(QString(243, QLatin1Char('a')) + domain));
    QVERIFY(matches(NetUtils::emailAddressRx(), QString(243, QLatin1Char('a')) + domain));
}

void tst_NetUtils::emailAddressLists_data()
{
    const auto table = columns<QString, bool>("s", "valid");
    const auto row = [&](const char* s, bool valid) { table(*s ? s : "empty", text(s), valid); };
    row("ab@x.fr", true);
    row("ab@x.fr,cd@y.fr", true);
    row("ab@x.fr;cd@y.fr", true);
    row("ab@x.fr , cd@y.fr\t;\nef@z.fr", true);
    row("ab@x.fr,cd@y.fr,ef@z.fr;gh@exemple.fr", true);
    row("rené@été.fr, иван@пример.рф", true);
    row("", false);
    row("ab", false);
    row("ab@x.fr,", false);
    row(",ab@x.fr", false);
    row("ab@x.fr,,cd@y.fr", false);
    row("ab@x.fr cd@y.fr", false);
    row("ab@x.fr:cd@y.fr", false);
    row("ab@x.fr, c@y.fr", false);
    row(" ab@x.fr", false);
    row("ab@x.fr ", false);
}

void tst_NetUtils::emailAddressLists()
{
    QFETCH(QString, s);
    QTEST(matches(NetUtils::emailAddressMultiRx(), s), "valid");
}

/// Texts on which the patterns would never come to an end.
void tst_NetUtils::hostileTexts_data()
{
    const auto row = columns<QString, bool, bool>("s", "web", "email");
    const auto repeated = [](const char* string, int times) {
        return text(string).repeated(times);
    };
    const QString http = text("http://a");
    row("slashes", http + repeated("/", 10000), true, false);
    row("slashes, then no path", http + repeated("/", 10000) + QLatin1Char('!'), false, false);
    row("folders", http + repeated("/a", 100000) + QLatin1Char('?'), false, false);
    row("host", http + repeated("1.", 100000) + QLatin1Char('!'), false, false);
    row("words", repeated("a", 250), false, false);
    row("words and an at", repeated("a", 249) + QLatin1Char('@'), false, false);
    row("underscores", repeated("_", 250), false, false);
    row("separators", repeated("a.", 124) + text("@x"), false, false);
    row("domain", text("ab@") + repeated("a", 247), false, false);
    row("labels", text("ab@") + repeated("a.", 123), false, false);
    row("labels, valid", text("ab@") + repeated("a.", 124) + text("fr"), false, true);
    row("hyphens", text("ab@") + repeated("a-", 120) + text("fr"), false, false);
    row("a million", repeated("a", 1000000), false, false);
}

void tst_NetUtils::hostileTexts()
{
    QFETCH(QString, s);
    QTEST(NetUtils::checkInternetAdress(s), "web");
    QTEST(NetUtils::checkEmailAdress(s), "email");
}

/// In a network namespace whose addresses the test assigns.
void tst_NetUtils::mainIpAddress()
{
#ifdef Q_OS_LINUX
    // In a separate thread, so that the other tests stay in their namespace.
    bool separated = false;
    bool made = true;
    QStringList found;
    std::thread thread([&] {
        separated = unshare(CLONE_NEWNET) == 0;
        if (!separated)
            return;
        found << NetUtils::mainIpAddress(); // only a loopback that is up
        made = addAddress("lo", "127.0.0.1") && made;
        found << NetUtils::mainIpAddress();
        made = addAddress("lo:1", "10.19.2.192") && addAddress("lo:2", "172.16.0.192") && made;
        found << NetUtils::mainIpAddress(); // private, but not 192…
        made = addAddress("lo:3", "192.0.2.7") && made;
        found << NetUtils::mainIpAddress();
        made = addAddress("lo:4", "192.168.1.20") && made;
        found << NetUtils::mainIpAddress(); // the first one is still the first
    });
    thread.join();
    if (!separated)
        QSKIP("the system does not allow a network namespace");
    QVERIFY(made);
    QCOMPARE(found,
             QStringList({QString(), QString(), QString(), text("192.0.2.7"), text("192.0.2.7")}));
#else
    QSKIP("network namespaces are Linux's");
#endif
}

void tst_NetUtils::mainIpAddressByRule()
{
    QString expected;
    const QList<QHostAddress> addresses = QNetworkInterface::allAddresses();
    for (const QHostAddress& address : addresses) {
        const QString string = address.toString();
        if (expected.isEmpty() && string.startsWith(QLatin1String("192."))
            && string.count(QLatin1Char('.')) == 3)
            expected = string;
    }
    QCOMPARE(NetUtils::mainIpAddress(), expected);
}

QTEST_GUILESS_MAIN(tst_NetUtils)
#include "tst_NetUtils.moc"
