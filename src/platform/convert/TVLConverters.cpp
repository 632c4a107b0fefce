#include "TVLConverters.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace {

QString programOr(const char *variable, const QString &name)
{
    const QString chosen = qEnvironmentVariable(variable);
    return chosen.isEmpty() ? TVLConverters::findProgram(name) : chosen;
}

} // namespace

QString TVLConverters::officePath()
{
    return programOr("TAVEL_SOFFICE", u"soffice"_s);
}

QString TVLConverters::markupPath()
{
    return programOr("TAVEL_PANDOC", u"pandoc"_s);
}

QString TVLConverters::findProgram(const QString &name)
{
    return QStandardPaths::findExecutable(name);
}

QString TVLConverters::ownProgram(const QString &name, const char *variable)
{
    const QString chosen = qEnvironmentVariable(variable);
    if (!chosen.isEmpty())
        return chosen;
#ifdef Q_OS_WIN
    const QString suffix = u".exe"_s;
#else
    const QString suffix;
#endif
    const QString beside = QCoreApplication::applicationDirPath() + u'/' + name + suffix;
    if (QFileInfo(beside).isFile())
        return beside;
    const QString installed = findProgram(name);
    return installed.isEmpty() ? beside : installed;
}
