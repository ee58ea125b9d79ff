// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Runs functions under test while FaultShim refuses, shortens or interrupts their file operations,
// or kills the process.

#ifndef FAULTRUNS_H
#define FAULTRUNS_H

#include "FaultTools.h"

#include <QMap>
#include <QString>
#include <QStringList>

#include <array>
#include <functional>
#include <vector>

/// One run of a function under test in a folder. Texts name paths relative to that folder.
struct Run
{
    QString root;
    Tree before;
    Tree after;
    FaultPlan plan;
    FaultReport report;
    bool succeeded;
    QString message; ///< the error that the function returned
    QStringList records; ///< what was logged

    QString path(const QString& relative) const { return root + '/'_L1 + relative; }
};

/// A scenario, run in a folder whose "src" must never change. Functions that return a complaint
/// return an empty text if nothing is wrong.
struct Scenario
{
    QString function; ///< the name under which its faults are counted
    std::function<void(const Run&)> prepare;
    std::function<bool(const Run&, QString* message)> act;
    /// The expected content of the whole folder after success, when there is no error and no log.
    std::function<Tree(const Run&)> complete;
    /// Complains about a run that failed or logged something.
    std::function<QString(const Run&)> wrongInFailure;
    /// Whether everything is synced with fsync(), so that failures after that do not count.
    bool isOnDiskEarly = false;
    /// Whether the function has to list and remove whole trees after a failure.
    bool leavesTrees = false;
    /// Complains about the folder after a kill; only for functions that promise to survive one.
    std::function<QString(const Run&)> wrongAfterKill = nullptr;
    /// Does what the next call does first, if a failure or a kill may leave work to it.
    std::function<void(const Run&)> recover = nullptr;
};

/// The number of faults in all runs of this process.
struct FaultCounts
{
    /// The runs in which a call was refused, by function and kind.
    QMap<QString, std::array<int, FaultKindCount>> refusals;
    int interruptions = 0; ///< runs in which a signal arrived before a call
    int kills = 0; ///< runs whose process was killed
};

const FaultCounts& faultCounts();

/// A limit above the number of calls of one kind in any scenario.
const int mostCalls = 1000;

/// Complains about a run that must succeed although there are faults of that kind.
QStringList mustSucceed(const Scenario& scenario, const FaultPlan& plan, int* refused = nullptr);

/// The kinds of file system that make a difference to the scenario, as plans without faults: one
/// that has everything, one without RENAME_EXCHANGE, one that also lacks O_TMPFILE, and one that
/// also lacks link().
std::vector<FaultPlan> fileSystems(const Scenario& scenario);

/// Refuses one call per run, starting with call number \a first, until a run makes no such call any
/// more. Returns complaints.
QStringList refuseEveryCall(const Scenario& scenario, FaultPlan plan, int first = 1);

/// Kills the process before each call in turn, one run for each. Returns complaints.
QStringList killAtEveryCall(const Scenario& scenario, FaultPlan plan);

/// Lets a signal arrive before each call in turn, one run for each. Returns complaints.
QStringList interruptEveryCall(const Scenario& scenario, FaultPlan plan);

#endif // FAULTRUNS_H
