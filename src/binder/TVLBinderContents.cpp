#include "TVLBinderContents.h"

#include "TVLBinderReader.h"
#include "TVLRegularFile.h"

#include <QFile>
#include <QPrinter>

TVLBinderContents::TVLBinderContents()
    : mRoot(std::make_unique<TVLProjectNode>(QPair<int, QUuid>(-1, QUuid()), nullptr))
{
}

TVLBinderContents::~TVLBinderContents() = default;

QString TVLBinderContents::read(const QString &filePath)
{
    TVLRegularFile file(filePath);
    return file.open(QIODevice::ReadOnly) ? read(&file) : file.errorString();
}

QString TVLBinderContents::read(QIODevice *device)
{
    TVLBinderReader reader(device);
    if (reader.readProject(this, binderRoot()))
        return {};
    const QString error =
        reader.hasError() ? reader.errorString() : tr("the root element has no version");
    return tr("line %1, column %2: %3")
        .arg(reader.lineNumber())
        .arg(reader.columnNumber())
        .arg(error);
}

void TVLBinderContents::enterNodes(const QList<TVLProjectNode *> &nodes)
{
    tvlEnterNodes(nodes, &mIds, &mUuids);
}

bool TVLBinderContents::addFavorite(int id)
{
    // As a model finds an item by its id: through the uuid.
    const QUuid uuid = mIds.value(id);
    const bool isItem = id >= 0 && !uuid.isNull() && mUuids.contains(uuid);
    (isItem ? mFavoriteIds : mDeadFavorites).append(id);
    return true;
}

QPrinter *TVLBinderContents::printer() const
{
    if (!mPrinter)
        mPrinter = std::make_unique<QPrinter>(QPrinter::PrinterResolution);
    return mPrinter.get();
}

void TVLBinderContents::setPrinter(QPrinter *printer)
{
    mPrinter.reset(printer);
}
