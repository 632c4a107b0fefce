#include "ReadOnlyProject.h"

#include "TVLBinderReader.h"

#include <QFile>
#include <QPrinter>

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

void ReadOnlyProject::enterNodes(const QList<TVLProjectNode *> &nodes)
{
    tvlEnterNodes(nodes, &mIds, &mUuids);
}

bool ReadOnlyProject::addFavorite(int id)
{
    // As a model finds an item by its id: through the uuid.
    const QUuid uuid = mIds.value(id);
    const bool isItem = id >= 0 && !uuid.isNull() && mUuids.contains(uuid);
    (isItem ? mFavoriteIds : mDeadFavorites).append(id);
    return true;
}

QPrinter *ReadOnlyProject::printer() const
{
    if (!mPrinter)
        mPrinter = std::make_unique<QPrinter>(QPrinter::PrinterResolution);
    return mPrinter.get();
}

void ReadOnlyProject::setPrinter(QPrinter *printer)
{
    mPrinter.reset(printer);
}
