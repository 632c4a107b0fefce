#include "FaultyRun.h"

#include "TestProject.h"

#include <QFile>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace {

/** How long a run may take before it counts as one that hangs. */
constexpr int PatienceMs = 60'000;

QString deedWord(Fault::Deed deed)
{
    switch (deed) {
    case Fault::FailForEver:
        return u"fail for ever"_s;
    case Fault::Kill:
        return u"kill"_s;
    case Fault::KillHalfway:
        return u"kill halfway"_s;
    default:
        return u"fail"_s;
    }
}

QStringList linesOf(const QByteArray &text)
{
    return QString::fromLocal8Bit(text).split(u'\n', Qt::SkipEmptyParts);
}

} // namespace

QString Fault::describe() const
{
    const QString text = u"operation %1, %2"_s.arg(at).arg(deedWord(deed));
    return error == 0 ? text : text + u" with "_s + qt_error_string(error);
}

FaultyRun runWithFault(const QString &program, const QStringList &arguments, const QString &folder,
                       const Fault &fault)
{
    const QTemporaryDir place;
    const QString log = place.filePath(u"operations"_s);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"LD_PRELOAD"_s, QStringLiteral(FAULT_OPERATIONS));
    environment.insert(u"FAULT_FOLDER"_s, folder);
    environment.insert(u"FAULT_LOG"_s, log);
    environment.insert(u"FAULT_DEED"_s, deedWord(fault.deed));
    environment.insert(u"FAULT_AT"_s, QString::number(fault.deed == Fault::Nothing ? 0 : fault.at));
    environment.insert(u"FAULT_ERROR"_s, QString::number(fault.error));

    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    FaultyRun run;
    run.hasEnded = process.waitForFinished(PatienceMs);
    run.isKilled = run.hasEnded && process.exitStatus() != QProcess::NormalExit;
    run.status = run.hasEnded && !run.isKilled ? process.exitCode() : -1;
    run.output = linesOf(process.readAllStandardOutput());
    run.errors = process.readAllStandardError();
    if (QFile file(log); file.open(QIODevice::ReadOnly))
        run.operations = linesOf(file.readAll());
    return run;
}

QString whyNoFaults()
{
    // A sanitizer's runtime may have to be the first of all libraries.
    const QTemporaryDir place;
    const FaultyRun run =
        runWithFault(QStringLiteral(FAULT_WORKER), {place.path(), u"nothing"_s}, place.path());
    return run.operations.isEmpty()
        ? u"operations can't be made to fail here: "_s + QString::fromLocal8Bit(run.errors)
        : QString();
}
