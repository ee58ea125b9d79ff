// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "FaultRuns.h"

#include "LogCapture.h"

#include <QDir>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace {

FaultCounts counts;

/// Sets up a run: an empty folder with the files of the scenario.
Run prepared(const Scenario& scenario, const FaultPlan& plan)
{
    // A folder in memory, where the system has one, takes a tenth of the time of a disk.
    static const Sandbox sandbox(folderInMemory());
    Run run = {};
    run.root = sandbox("run"_s);
    run.plan = plan;
    if (!QDir(run.root).removeRecursively() || !QDir().mkpath(run.root))
        qFatal("cannot empty %s", qPrintable(run.root));
    scenario.prepare(run);
    run.before = snapshotOf(run.root);
    return run;
}

/// Runs the scenario once, as the plan says.
Run run(const Scenario& scenario, const FaultPlan& plan)
{
    Run run = prepared(scenario, plan);
    {
        LogCapture log;
        shimArm()(&plan);
        run.succeeded = scenario.act(run, &run.message);
        run.report = shimDisarm()();
        run.records = log.lines();
    }
    // A tree that was moved aside cannot be put back while the disk refuses every rename.
    if (plan.lacksExchange && plan.kind == FaultRename && plan.isLasting && scenario.recover)
        scenario.recover(run);
    run.after = snapshotOf(run.root);
    const QString prefix = run.root + '/'_L1;
    run.message.remove(prefix);
    run.records.replaceInStrings(prefix, QString());
    return run;
}

/// Whether what was written cannot have reached the disk.
bool cannotHaveSucceeded(const Scenario& scenario, const Run& run)
{
    if (!run.plan.isLasting || run.report.refused == 0)
        return false;
    const bool isClosing = run.plan.kind == FaultClose && run.plan.nth == 1;
    if (scenario.isOnDiskEarly && (isClosing || QByteArray(run.report.function) == "fdatasync"))
        return false;
    return isClosing || run.plan.kind == FaultWrite;
}

QString wrongIn(const Scenario& scenario, const Run& run)
{
    if (below(run.after, "src"_s) != below(run.before, "src"_s))
        return "the source changed"_s;
    Tree after = run.after;
    for (const QString& path : run.after.keys()) {
        if (!isTemporary(path))
            continue;
        // A file that cannot be removed stays behind, and so does one whose folder cannot be
        // listed.
        const bool cannotList = scenario.leavesTrees && run.plan.isLasting
            && (run.plan.kind == FaultOpen || run.plan.kind == FaultRead);
        if (!cannotList && (run.plan.kind != FaultUnlink || run.report.refused == 0))
            return path + " stayed behind"_s;
        for (const QString& part : below(after, path).keys())
            after.remove(path + '/'_L1 + part);
        after.remove(path);
    }
    if (!run.succeeded || !run.records.isEmpty())
        return scenario.wrongInFailure(run);
    if (cannotHaveSucceeded(scenario, run))
        return "it succeeded on a disk that took nothing more"_s;
    if (!run.message.isEmpty())
        return "it succeeded with a message"_s;
    return difference(after, scenario.complete(run));
}

/// Describes what is wrong with a run.
QString complaint(const QString& wrong, const Run& run)
{
    return wrong + " when "_s + textOf(run.plan, run.report) + "\n    result "_s
        + (run.succeeded ? "true"_s : "false"_s) + ", message \""_s + run.message
        + "\", records (\""_s + run.records.join("\", \""_s) + "\")"_s;
}

/// Runs the scenario in a child process that is killed as the plan says. Returns false if it ran to
/// its end.
bool isKilled(const Scenario& scenario, const Run& run)
{
    const pid_t child = fork();
    if (child == 0) {
        const LogCapture log;
        QString message;
        shimArm()(&run.plan);
        scenario.act(run, &message);
        shimDisarm()();
        _exit(0);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child)
        qFatal("cannot start a process");
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
}

} // namespace

const FaultCounts& faultCounts()
{
    return counts;
}

QStringList mustSucceed(const Scenario& scenario, const FaultPlan& plan, int* refused)
{
    const Run run = ::run(scenario, plan);
    if (refused)
        *refused = run.report.refused;
    QString wrong = wrongIn(scenario, run);
    if (wrong.isEmpty() && (!run.succeeded || !run.records.isEmpty()))
        wrong = "it failed"_s;
    return wrong.isEmpty() ? QStringList() : QStringList(complaint(wrong, run));
}

std::vector<FaultPlan> fileSystems(const Scenario& scenario)
{
    std::vector<FaultPlan> plans;
    int lacking = -1;
    for (const int features : {3, 2, 1, 0}) {
        FaultPlan plan = {};
        plan.lacksExchange = features < 3;
        plan.lacksUnnamedFiles = features < 2;
        plan.lacksHardLinks = features < 1;
        const int lackingHere = run(scenario, plan).report.lacking;
        if (lackingHere > lacking)
            plans.push_back(plan);
        lacking = lackingHere;
    }
    return plans;
}

QStringList refuseEveryCall(const Scenario& scenario, FaultPlan plan, int first)
{
    QStringList complaints;
    for (plan.nth = first;; ++plan.nth) {
        const Run run = ::run(scenario, plan);
        const QString wrong = wrongIn(scenario, run);
        if (!wrong.isEmpty())
            complaints.append(complaint(wrong, run));
        if (run.report.refused > 0)
            ++counts.refusals[scenario.function][size_t(plan.kind)];
        if (run.report.refused == 0) {
            if (!run.succeeded || !run.records.isEmpty())
                complaints.append(complaint("it failed by itself"_s, run));
            return complaints;
        }
        if (plan.nth > mostCalls) {
            complaints.append("no end of calls"_s);
            return complaints;
        }
    }
}

QStringList killAtEveryCall(const Scenario& scenario, FaultPlan plan)
{
    QStringList complaints;
    plan.kills = true;
    for (plan.kind = 0; plan.kind < FaultKindCount; ++plan.kind) {
        for (plan.nth = 1; plan.nth <= mostCalls; ++plan.nth) {
            Run run = prepared(scenario, plan);
            if (!isKilled(scenario, run))
                break;
            ++counts.kills;
            if (scenario.recover)
                scenario.recover(run);
            run.after = snapshotOf(run.root);
            QString wrong = scenario.wrongAfterKill(run);
            if (below(run.after, "src"_s) != below(run.before, "src"_s))
                wrong = "the source changed"_s;
            if (!wrong.isEmpty())
                complaints.append("%1 after a kill before %2 %3%4"_s.arg(
                    wrong, QString::fromLatin1(kindNames[plan.kind]), QString::number(plan.nth),
                    plan.lacksExchange ? ", no RENAME_EXCHANGE"_s : QString()));
        }
        if (plan.nth > mostCalls)
            complaints.append("no end of calls"_s);
    }
    return complaints;
}

QStringList interruptEveryCall(const Scenario& scenario, FaultPlan plan)
{
    QStringList complaints;
    int interrupted = 1;
    for (plan.nth = 1; interrupted > 0 && plan.nth <= mostCalls; ++plan.nth) {
        complaints += mustSucceed(scenario, plan, &interrupted);
        counts.interruptions += interrupted;
    }
    return complaints;
}
