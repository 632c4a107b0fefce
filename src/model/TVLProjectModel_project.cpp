#include "TVLProjectModel_p.h"

#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TvlCore.h"

#include <QFileInfo>
#include <QImage>
#include <QPixmap>
#include <QPrinter>

namespace {

// A4 less what rounding to hundredths of an inch takes off.
constexpr QSizeF FallbackPageSize(594.72, 841.68);

constexpr char NotifyTargetsProperty[] = "notifyTargets";

} // namespace

QString TVLProjectModel::directoryName() const
{
    return TVLProjectFolderFormat::directoryName(d->mPath);
}

bool TVLProjectModel::setFormatVersion(TVL::FormatVersion version)
{
    if (version == formatVersion())
        return true;
    d->setFolderFormatVersion(version);
    // Asking for the version file's path would make a folder for a project that has none yet.
    if (d->mMobileProject || !QFileInfo::exists(d->mPath)
        || !QFileInfo::exists(TVLProjectFolderFormat::versionFilePath(d->mPath)))
        return true;
    return TVLProjectFolderFormat::writeFormatVersion(d->mPath, version);
}

// --- Titles and authors

QString TVLProjectModel::defaultAuthorFullName()
{
    return TvlCore::systemUsername();
}

QString TVLProjectModel::projectProperty(const QString &tag) const
{
    return property(tag.toLatin1().constData()).toString();
}

void TVLProjectModel::setProjectProperty(const QString &tag, const QString &value)
{
    if (projectProperty(tag) == value)
        return;
    setProperty(tag.toLatin1().constData(), value);
    markProjectAsModified(true);
}

QString TVLProjectModel::projectTitle() const
{
    return projectProperty(TVLProjectFolderFormat::ProjectTitleTag);
}

void TVLProjectModel::setProjectTitle(const QString &title)
{
    setProjectProperty(TVLProjectFolderFormat::ProjectTitleTag, title);
}

QString TVLProjectModel::projectAbbreviatedTitle() const
{
    return projectProperty(TVLProjectFolderFormat::AbbreviatedTitleTag);
}

void TVLProjectModel::setProjectAbbreviatedTitle(const QString &title)
{
    setProjectProperty(TVLProjectFolderFormat::AbbreviatedTitleTag, title);
}

QString TVLProjectModel::authorFullName() const
{
    return projectProperty(TVLProjectFolderFormat::FullNameTag);
}

void TVLProjectModel::setAuthorFullName(const QString &name)
{
    setProjectProperty(TVLProjectFolderFormat::FullNameTag, name);
}

QString TVLProjectModel::authorSurname() const
{
    return projectProperty(TVLProjectFolderFormat::LastNameTag);
}

void TVLProjectModel::setAuthorSurname(const QString &name)
{
    setProjectProperty(TVLProjectFolderFormat::LastNameTag, name);
}

QString TVLProjectModel::authorForename() const
{
    return projectProperty(TVLProjectFolderFormat::FirstNameTag);
}

void TVLProjectModel::setAuthorForename(const QString &name)
{
    setProjectProperty(TVLProjectFolderFormat::FirstNameTag, name);
}

// --- The page

QPrinter *TVLProjectModel::printer() const
{
    if (!d->mPrinter)
        d->mPrinter = std::make_shared<QPrinter>(QPrinter::PrinterResolution);
    return d->mPrinter.get();
}

void TVLProjectModel::setPrinter(QPrinter *printer)
{
    if (printer != d->mPrinter.get())
        d->mPrinter.reset(printer);
}

QRectF TVLProjectModel::printerPageRect() const
{
    return printer()->pageRect(QPrinter::Point);
}

QSizeF TVLProjectModel::printerPageSize() const
{
    const QRectF page = printerPageRect();
    return page.isEmpty() ? FallbackPageSize : page.size();
}

// --- The backdrop of full screen

void TVLProjectModel::setFullScreenBackdrop(const QVariant &backdrop)
{
    // A number and its text count as equal otherwise.
    if (d->mFullScreenBackdrop.metaType() == backdrop.metaType()
        && d->mFullScreenBackdrop == backdrop)
        return;
    d->mFullScreenBackdrop = backdrop;
    markProjectAsModified(true);
}

void TVLProjectModel::setFullScreenBackdrop(const QString &filePath)
{
    setFullScreenBackdrop(filePath.isEmpty() ? QVariant() : QVariant(filePath));
}

void TVLProjectModel::setFullScreenBackdrop(int nodeId)
{
    setFullScreenBackdrop(nodeId < 0 ? QVariant() : QVariant(nodeId));
}

void TVLProjectModel::clearFullScreenBackdrop()
{
    setFullScreenBackdrop(QVariant());
}

bool TVLProjectModel::fullScreenBackdropIsNodeId() const
{
    return d->mFullScreenBackdrop.typeId() == QMetaType::Int;
}

int TVLProjectModel::fullScreenBackdropNodeId() const
{
    return fullScreenBackdropIsNodeId() ? d->mFullScreenBackdrop.toInt() : -1;
}

QPixmap TVLProjectModel::fullScreenBackdropPixmap() const
{
    if (fullScreenBackdropIsNodeId())
        return QPixmap::fromImage(rawDataImage(index(fullScreenBackdropNodeId())));
    const QString filePath = d->mFullScreenBackdrop.toString();
    return QFileInfo::exists(filePath) ? QPixmap(filePath) : QPixmap();
}

// --- Backups, targets and scripts

void TVLProjectModel::adoptBackupIncluded(bool included)
{
    d->mBackupIncluded = included;
    // Projects count as modified after opening since this stands in binders.
    d->mIsModifiedByRead = true;
}

bool TVLProjectModel::notifyTargets() const
{
    return property(NotifyTargetsProperty).toBool();
}

void TVLProjectModel::setNotifyTargets(bool notify)
{
    if (notify == notifyTargets())
        return;
    setProperty(NotifyTargetsProperty, notify);
    markProjectAsModified(true);
}

void TVLProjectModel::setDraftTarget(const TVLDraftTarget &target)
{
    d->mDraftTarget = target;
    markProjectAsModified(true);
}

void TVLProjectModel::setSessionTarget(const TVLSessionTarget &target)
{
    d->mSessionTarget = target;
    markProjectAsModified(true);
}

bool TVLProjectModel::setScriptMode(const TVLScriptMode &mode)
{
    d->mScriptMode = mode;
    const bool isWritten = TVLProjectFolderFormat::writeScriptSettings(d->mPath, mode);
    markProjectAsModified(true);
    Q_EMIT scriptModeChanged(mode);
    Q_EMIT metaDataChanged();
    return isWritten;
}
