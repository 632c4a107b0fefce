#include "StandIn.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace {

constexpr char ModeVariable[] = "TAVEL_STAND_IN";
constexpr char RecordVariable[] = "TAVEL_STAND_IN_RECORD";

bool isLiving(const QString &processId)
{
    QFile file(u"/proc/%1/stat"_s.arg(processId));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    // One that nobody has asked about yet is dead all the same.
    const QByteArray line = file.readAll();
    return !line.sliced(line.lastIndexOf(')') + 1).trimmed().startsWith('Z');
}

} // namespace

QString standInPath()
{
    return QStringLiteral(STAND_IN);
}

StandInRecord::StandInRecord(const QByteArray &mode)
{
    qputenv(RecordVariable, mFolder.filePath(u"record"_s).toUtf8());
    if (!mode.isEmpty())
        qputenv(ModeVariable, mode);
}

StandInRecord::~StandInRecord()
{
    qunsetenv(RecordVariable);
    qunsetenv(ModeVariable);
}

QStringList StandInRecord::lines() const
{
    QFile file(mFolder.filePath(u"record"_s));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
}

QStringList StandInRecord::livingProcesses() const
{
    QStringList living;
    const QStringList numbers = lines();
    for (const QString &number : numbers) {
        if (bool isNumber = false; number.toInt(&isNumber) > 0 && isNumber && isLiving(number))
            living.append(number);
    }
    return living;
}
