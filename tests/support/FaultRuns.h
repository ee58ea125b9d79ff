// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Runs of functions under test while FaultShim refuses, shortens or interrupts their calls on
// files, or kills them.

#ifndef FAULTRUNS_H
#define FAULTRUNS_H

#include "FaultTools.h"

#include <QMap>
#include <QString>
#include <QStringList>

#include <array>
#include <functional>
#include <vector>

/// A function under test has run in a folder. Texts name paths relative to that folder.
struct Run
{
    QString root;
    Tree before;
    Tree after;
    FaultPlan plan;
    FaultReport report;
    bool succeeded;
    QString message; ///< what came back in the `QString* error`
    QStringList records; ///< what was logged

    QString path(const QString& relative) const { return root + '/'_L1 + relative; }
};

/// What is run, in a folder whose "src" must never change. Answers in words are empty where nothing
/// is wrong.
struct Scenario
{
    QString function; ///< the name under which its faults are counted
    std::function<void(const Run&)> prepare;
    std::function<bool(const Run&, QString* message)> act;
    /// The whole folder after success, in which nothing is said and nothing logged.
    std::function<Tree(const Run&)> complete;
    /// What is wrong with a run that failed or logged something.
    std::function<QString(const Run&)> wrongInFailure;
    /// Whether all is brought to the disk with fsync(), so that failures after that do not count.
    bool isOnDiskEarly = false;
    /// Whether whole trees are to be removed after a failure.
    bool leavesTrees = false;
    /// What is wrong when the process was killed; only for what promises to survive that.
    std::function<QString(const Run&)> wrongAfterKill = nullptr;
    /// What the next call does first, where a failure or a kill may leave that to it.
    std::function<void(const Run&)> recover = nullptr;
};

/// What all runs of the process were for.
struct FaultCounts
{
    /// The runs in which a call was refused, by function and kind.
    QMap<QString, std::array<int, FaultKindCount>> refusals;
    int interruptions = 0; ///< the runs in which a signal came before a call
    int kills = 0; ///< the runs whose process was killed
};

const FaultCounts& faultCounts();

/// No scenario needs so many of a kind.
const int mostCalls = 1000;

/// Complaints about a run that no fault of that kind may hinder.
QStringList mustSucceed(const Scenario& scenario, const FaultPlan& plan, int* refused = nullptr);

/// The file systems between which the scenario makes a difference, as plans without faults: one
/// that has everything, one without RENAME_EXCHANGE, one without O_TMPFILE besides, and one without
/// link() besides.
std::vector<FaultPlan> fileSystems(const Scenario& scenario);

/// Refuses one call after the other, from number \a first on, until a run has no call left to
/// refuse. Returns complaints.
QStringList refuseEveryCall(const Scenario& scenario, FaultPlan plan, int first = 1);

/// Kills the process before one call after the other. Returns complaints.
QStringList killAtEveryCall(const Scenario& scenario, FaultPlan plan);

/// Lets a signal come before one call after the other. Returns complaints.
QStringList interruptEveryCall(const Scenario& scenario, FaultPlan plan);

#endif // FAULTRUNS_H
