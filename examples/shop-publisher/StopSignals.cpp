// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "StopSignals.h"

#include <QSocketNotifier>

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace {

const int caughtSignals[] = {SIGINT, SIGTERM, SIGHUP};

const int exitCodeOfSecond = 130;

/// A handler may do hardly anything but write to a file: it writes a byte to this pipe, and Qt
/// listens at the other end.
int pipeEnds[2] = {-1, -1};

/// The number of signals received.
volatile std::sig_atomic_t caught = 0;

extern "C" void passOn(int)
{
    // A second request means not to wait. The next run cleans up.
    if (caught != 0)
        ::_exit(exitCodeOfSecond);
    caught = 1;
    const int savedErrno = errno;
    const char byte = 0;
    // A full pipe already contains the request.
    const ssize_t written = ::write(pipeEnds[1], &byte, 1);
    static_cast<void>(written);
    errno = savedErrno;
}

} // namespace

StopSignals::StopSignals()
{
    if (::pipe(pipeEnds) != 0)
        return; // the signals keep their effect and end the program
    for (const int end : pipeEnds) {
        ::fcntl(end, F_SETFL, O_NONBLOCK);
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
    }
    connect(new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this),
            &QSocketNotifier::activated, this, [this] {
                char byte = 0;
                while (::read(pipeEnds[0], &byte, 1) > 0) { }
                Q_EMIT stopRequested();
            });

    for (const int signal : caughtSignals) {
        struct sigaction before = {};
        if (::sigaction(signal, nullptr, &before) == 0 && before.sa_handler == SIG_IGN)
            continue;
        struct sigaction action = {};
        action.sa_handler = passOn;
        action.sa_flags = SA_RESTART;
        ::sigaction(signal, &action, nullptr);
    }
}
