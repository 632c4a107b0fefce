#include "BenchMemory.h"

#include <QFile>

#include <malloc.h>

using namespace Qt::StringLiterals;

namespace {

double statusBytes(const QByteArray &field)
{
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> lines = status.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith(field))
            return line.mid(field.size()).simplified().split(' ').constFirst().toDouble() * 1024;
    }
    return 0;
}

} // namespace

double benchMemory()
{
    malloc_trim(0);
    return statusBytes("VmRSS:");
}

double benchPeakMemory()
{
    return statusBytes("VmHWM:");
}

void resetBenchPeakMemory()
{
    QFile file(u"/proc/self/clear_refs"_s);
    if (file.open(QIODevice::WriteOnly))
        file.write("5");
}
