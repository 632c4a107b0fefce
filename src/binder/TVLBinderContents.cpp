#include "TVLBinderContents.h"

#include "TVLBinderReader.h"
#include "TVLRegularFile.h"

#include <QFile>
#include <QPrinter>

#include <variant>

namespace {

/** The last name of one of the two kinds. */
template <typename Name>
std::optional<Name> lastName(const QList<TVLBinderSections::ItemName> &names)
{
    std::optional<Name> last;
    for (const TVLBinderSections::ItemName &name : names) {
        if (const Name *found = std::get_if<Name>(&name))
            last = *found;
    }
    return last;
}

} // namespace

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

std::optional<QUuid> TVLBinderContents::namedTemplateFolderUuid() const
{
    return lastName<QUuid>(mSections.mTemplateFolderNames);
}

std::optional<int> TVLBinderContents::namedTemplateFolderId() const
{
    return lastName<int>(mSections.mTemplateFolderNames);
}

bool TVLBinderContents::adoptSection(TVLBinderSection section)
{
    if (section != TVLBinderSection::Favorites)
        return true;
    // As a model finds an item by its id: through the uuid.
    mSections.mFavorites.removeIf([this](int id) {
        const QUuid uuid = mIds.value(id);
        const bool isItem = id >= 0 && !uuid.isNull() && mUuids.contains(uuid);
        if (!isItem)
            mDeadFavorites.append(id);
        return !isItem;
    });
    return true;
}

TVLBinderSections TVLBinderContents::binderSections() const
{
    TVLBinderSections sections = mSections;
    if (!sections.mPrinter)
        sections.mPrinter = std::make_shared<QPrinter>(QPrinter::PrinterResolution);
    return sections;
}
