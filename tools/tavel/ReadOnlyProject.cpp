#include "ReadOnlyProject.h"

#include "TVLBinderReader.h"

#include <QFile>

ReadOnlyProject::ReadOnlyProject()
    : mRoot(std::make_unique<TVLProjectNode>(QPair<int, QUuid>(-1, QUuid()), nullptr))
{
}

ReadOnlyProject::~ReadOnlyProject() = default;

QString ReadOnlyProject::read(const QString &filePath)
{
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly))
        return file.errorString();
    TVLBinderReader reader(&file);
    if (reader.readProject(this, binderRoot()))
        return {};
    const QString error =
        reader.hasError() ? reader.errorString() : u"the root element has no version"_qs;
    return u"line %1, column %2: %3"_qs.arg(reader.lineNumber())
        .arg(reader.columnNumber())
        .arg(error);
}
