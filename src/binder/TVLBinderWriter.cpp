#include "TVLBinderWriter.h"

#include "TVLBinderFields_p.h"
#include "TVLBinderWords_p.h"
#include "TVLProjectNode.h"

#include "TCoreType.h"
#include "TUuid.h"
#include "TVLDoors.h"
#include "TVLXmlText_p.h"

#include <QCoreApplication>
#include <QDebug>

#include <algorithm>

using namespace Qt::StringLiterals;

using namespace TVLBinderTags;
namespace Attribute = TVLBinderAttributes;
namespace Words = TVLBinderWords;

namespace {

QString uuidText(const QUuid &uuid)
{
    return TUuid::toStringNoBraces(uuid, true);
}

} // namespace

TVLBinderWriter::TVLBinderWriter()
{
    setAutoFormatting(true);
}

TVLBinderWriter::TVLBinderWriter(QIODevice *device)
    : QXmlStreamWriter(device)
{
    setAutoFormatting(true);
}

void TVLBinderWriter::writeCharacters(const QString &text)
{
    tvlWriteXmlText(this, xmlText(text));
}

void TVLBinderWriter::writeTextElement(const QString &name, const QString &text)
{
    writeStartElement(name);
    writeCharacters(text);
    writeEndElement();
}

void TVLBinderWriter::writeAttribute(const QString &name, const QString &value)
{
    QXmlStreamWriter::writeAttribute(name, xmlText(value));
}

void TVLBinderWriter::writeCDATA(const QString &text)
{
    QXmlStreamWriter::writeCDATA(xmlText(text));
}

QString TVLBinderWriter::xmlText(const QString &text)
{
    constexpr int Shown = 60;
    QString clean = tvlXmlText(text);
    // A text that XML can hold comes back as it is, without a copy.
    if (clean.constData() != text.constData())
        tellLeftOut(u"characters of \"%1\" that XML can't hold"_s.arg(clean.left(Shown)));
    return clean;
}

void TVLBinderWriter::tellLeftOut(const QString &what)
{
    qWarning().noquote() << "Left out in writing:" << what;
}

void TVLBinderWriter::writeDateAttribute(const QString &name, const QDateTime &date)
{
    const QString text = mDates.toString(date);
    if (text.isEmpty() && date.isValid())
        tellLeftOut(u"the year %1, which doesn't have four digits"_s.arg(date.date().year()));
    writeAttribute(name, text);
}

void TVLBinderWriter::writeProject(const TVLBinderProject *project, const TVLProjectNode *root)
{
    const TVLBinderSections sections = project->binderSections();
    const TVL::BinderVersion version = sections.mInfo.mBinderVersion;
    mBinderVersion = version == TVL::NoBinderVersion ? TVL::BinderVersion2 : version;
    if (project->formatVersion() == TVL::FormatVersion23)
        mBinderVersion = TVL::BinderVersion3;

    const bool mobile = project->isMobileProject();
    writeRootStart(sections.mInfo, mobile, false);
    writeNodeList(root, mobile);
    writeLabels(sections.mLabelTitle, sections.mDefaultLabelId, sections.mLabels);
    writeStatusItems(sections.mStatusTitle, sections.mDefaultStatusId, sections.mStatusItems);
    writeTemplateFolder(sections.mTemplateFolderUuid);
    if (!mobile) {
        writeCollections(sections.mCollections);
        writeKeywords(sections.mKeywords);
        writeCustomMetaDataSettings(sections.mCustomMetaDataSettings);
        writeProperties(sections.mProperties);
        writeProjectTargets(sections.mDraftTarget, sections.mSessionTarget,
                            sections.mNotifyTargets);
        writeFavorites(sections.mFavorites, project->idToUuid());
        writeAutoCompleteList(sections.mAutoCompleteList);
        writeBackupSettings(sections.mBackupIncluded);
        writeFullScreenBackdrop(sections.mFullScreenBackdrop);
        writeProjectReferences(sections.mProjectReferences);
        writePrintSettings(sections.mPrinter.get());
        writeUserProjectData(sections.mUserProjectData);
    }
    writeEndTavelinorProjectTag();
}

void TVLBinderWriter::writeStartTavelinorProjectTag(const TVLBinderProject *project,
                                                    bool isTemplate)
{
    writeRootStart(project->binderSections().mInfo, project->isMobileProject(), isTemplate);
}

void TVLBinderWriter::writeRootStart(const TVLProjectInfo &info, bool mobile, bool isTemplate)
{
    writeStartDocument();
    writeStartElement(TavelinorProject);
    writeAttribute(Attribute::Template, Words::yesOrNo(isTemplate));
    writeAttribute(Attribute::Version, TVL::toString(mBinderVersion));
    writeAttribute(Attribute::Creator, u"TVLLIN-%1"_s.arg(QCoreApplication::applicationVersion()));
    writeAttribute(Attribute::Device, info.mDevice);
    writeAttribute(Attribute::Modified, tvlDateTimeToString(info.mModified, false));
    if (mobile) {
        writeUuidAttribute(Attribute::SyncID, info.mSyncId);
        writeUuidAttribute(Attribute::Checksums, info.mChecksumsId);
    } else {
        writeUuidAttribute(Attribute::ModID, info.mModId);
    }
}

void TVLBinderWriter::writeEndTavelinorProjectTag()
{
    writeEndElement();
    writeEndDocument();
}

void TVLBinderWriter::writeUuidAttribute(const QString &name, const QUuid &uuid)
{
    if (!uuid.isNull())
        writeAttribute(name, uuidText(uuid));
}

void TVLBinderWriter::writeNodeList(const TVLProjectNode *root, bool mobile)
{
    writeStartElement(Binder);
    for (const TVLProjectNode *node : root->mChildren)
        writeNode(node, mobile);
    writeEndElement();
}

void TVLBinderWriter::writeNode(const TVLProjectNode *top, bool mobile)
{
    const TVLProjectNode *node = top;
    int depth = 0;
    for (;;) {
        writeItemStart(node, mobile);
        if (!node->mChildren.isEmpty()) {
            writeStartElement(Children);
            node = node->mChildren.constFirst();
            if (++depth == DeepestIndentedItem)
                setAutoFormatting(false);
            continue;
        }
        writeEndElement();
        while (node != top && node == node->mParent->mChildren.constLast()) {
            node = node->mParent;
            if (depth-- == DeepestIndentedItem)
                setAutoFormatting(true);
            writeEndElement();
            writeEndElement();
        }
        if (node == top)
            return;
        node = node->mParent->mChildren.at(node->row() + 1);
    }
}

void TVLBinderWriter::writeItemStart(const TVLProjectNode *node, bool mobile)
{
    writeStartElement(BinderItem);
    if (node->mId >= 0)
        writeAttribute(Attribute::ID, QString::number(node->mId));
    writeAttribute(Attribute::UUID, uuidText(node->mUuid.isNull() ? tvlNewUuid() : node->mUuid));
    writeDateAttribute(Attribute::Created, node->mCreated);
    writeDateAttribute(Attribute::Modified, node->mModified);
    writeAttribute(Attribute::Type, TVL::wordOf(node->mNodeType));

    writeTextElement(Title, node->mTitle);
    writeMetaData(*node, mobile);
    switch (node->mNodeType) {
    case TVL::Folder:
    case TVL::Text:
        writeTextSettings(*node);
        break;
    case TVL::Image:
    case TVL::PDF:
    case TVL::WebArchive:
        writeMediaSettings(*node);
        break;
    default:
        break;
    }
    writeCorkboardAndOutliner(node);
    writeKeywords(node);
    if (!node->mReferences.isEmpty()) {
        writeStartElement(References);
        writeReferences(node->mReferences);
        writeEndElement();
    }
    if (node->mDefaultChildTemplateId >= 0)
        writeTextElement(DefaultChildTemplateID, QString::number(node->mDefaultChildTemplateId));
}

void TVLBinderWriter::writeMetaData(const TVLProjectNodeProperties &properties, bool mobile)
{
    writeStartElement(MetaData);
    for (const TVLBinderField &field : tvlMetaDataFields()) {
        if (mobile && field.scope == TVLBinderScope::DesktopOnly)
            continue;
        if (const auto *id = std::get_if<TVLBinderField::Id>(&field.member)) {
            if (properties.**id != -1)
                writeTextElement(field.tag, QString::number(properties.**id));
        } else if (const auto *flag = std::get_if<TVLBinderField::Flag>(&field.member)) {
            writeYes(field.tag, properties.**flag);
        } else if (const auto *text = std::get_if<TVLBinderField::Text>(&field.member)) {
            writeTextUnlessEmpty(field.tag, properties.**text);
        } else if (const auto *selection = std::get_if<TVLBinderField::Selection>(&field.member)) {
            writeSelection(field.tag, properties.**selection);
        }
    }
    if (!mobile && !properties.mCustomMetaData.isEmpty())
        writeCustomMetaData(properties.mCustomMetaData);
    writeEndElement();
}

void TVLBinderWriter::writeYes(const QString &tag, bool flag)
{
    if (flag)
        writeTextElement(tag, Words::yesOrNo(true));
}

void TVLBinderWriter::writeTextUnlessEmpty(const QString &tag, const QString &text)
{
    if (!text.isEmpty())
        writeTextElement(tag, text);
}

void TVLBinderWriter::writeSelection(const QString &tag, const QPair<int, int> &selection)
{
    if (selection != QPair<int, int>(0, 0))
        writeTextElement(tag, u"%1,%2"_s.arg(selection.first).arg(selection.second));
}

void TVLBinderWriter::writeCustomMetaData(const QMap<QString, QString> &values)
{
    writeStartElement(CustomMetaData);
    for (auto value = values.cbegin(); value != values.cend(); ++value) {
        // A field without a key is an error to the reader and would cost the whole binder.
        const QString key = tvlXmlText(value.key());
        if (key.isEmpty()) {
            tellLeftOut(u"\"%1\", which belongs to a field without a key"_s.arg(value.value()));
            continue;
        }
        writeStartElement(MetaDataItem);
        writeTextElement(FieldID, value.key());
        writeTextElement(Value, value.value());
        writeEndElement();
    }
    writeEndElement();
}

void TVLBinderWriter::writeTextSettings(const TVLProjectNodeProperties &properties)
{
    writeStartElement(TextSettings);
    writeTextUnlessEmpty(TextMode, properties.mTextMode);
    writeSelection(TextSelection, properties.mTextSelection);
    if (!properties.mTypingAttributes.isEmpty())
        writeTextElement(TypingAttributesRTFData,
                         QString::fromLatin1(properties.mTypingAttributes.toHex()));
    writeTarget(properties);
    writeEndElement();
}

void TVLBinderWriter::writeTarget(const TVLProjectNodeProperties &properties)
{
    writeStartElement(Target);
    writeAttribute(Attribute::Type,
                   tvlWordOf(Words::TargetTypes, TVL::TargetType(properties.mTargetType), u"Words")
                       .toString());
    if (properties.mTargetNotify)
        writeAttribute(Attribute::Notify, Words::yesOrNo(true));
    if (properties.mTargetAllowOver)
        writeAttribute(Attribute::AllowOver, Words::yesOrNo(true));
    if (properties.mTargetBuffer > 0)
        writeAttribute(Attribute::Buffer, QString::number(properties.mTargetBuffer));
    writeCharacters(QString::number(properties.mTarget));
    writeEndElement();
}

void TVLBinderWriter::writeMediaSettings(const TVLProjectNodeProperties &properties)
{
    writeStartElement(MediaSettings);
    if (properties.mNodeType == TVL::Image) {
        if (!tvlFuzzyCompare(properties.mImageScaleFactor, 1.0))
            writeTextElement(ImageScaleFactor,
                             QString::number(properties.mImageScaleFactor, 'g', 6));
        const QStringView rotation =
            tvlWordOf(Words::ImageRotations, properties.mImageRotation, {});
        if (!rotation.isEmpty())
            writeTextElement(ImageRotation, rotation.toString());
        writeTextElement(ImageScalesProportionally,
                         Words::yesOrNo(properties.mImageScalesProportionally));
    } else if (properties.mNodeType == TVL::PDF) {
        writeTextElement(CurrentPDFPage, QString::number(properties.mCurrentPdfPage));
    }
    if (properties.mNodeType == TVL::WebArchive)
        writeTextElement(OriginalURL, properties.mOriginalUrl);
    else
        writeTextUnlessEmpty(OriginalURL, properties.mOriginalUrl);
    writeYes(IsAlias, properties.mIsAlias);
    writeEndElement();
}

void TVLBinderWriter::writeCorkboardAndOutliner(const TVLProjectNode *node)
{
    if (!node->mFreeformMode && node->mFreeformPositions.isEmpty()
        && node->mSelectedSubdocumentIds.isEmpty())
        return;

    const QList<int> childIds = node->childIDs();
    const QSet<int> selected =
        QSet<int>(childIds.begin(), childIds.end()).intersect(node->mSelectedSubdocumentIds);
    if (!node->mFreeformMode && node->mFreeformPositions.isEmpty() && selected.isEmpty())
        return;

    writeStartElement(CorkboardAndOutliner);
    if (!selected.isEmpty())
        writeTextElement(SelectedSubdocumentIDs, TCoreType::toString(selected));
    writeStartElement(CorkboardSettings);
    writeYes(FreeformMode, node->mFreeformMode);
    if (!node->mFreeformPositions.isEmpty())
        writeFreeformDocuments(node);
    writeEndElement();
    writeEndElement();
}

void TVLBinderWriter::writeFreeformDocuments(const TVLProjectNode *node)
{
    // Children without a stored position are laid out on a diagonal, so that no card hides another.
    qreal nextDefault = 1.0;
    writeStartElement(FreeformCorkboardDocuments);
    for (const TVLProjectNode *child : node->mChildren) {
        TVLFreeformPositionInfo info;
        const auto stored = node->mFreeformPositions.constFind(child->mId);
        if (stored != node->mFreeformPositions.cend()) {
            info = *stored;
        } else {
            info.mPosition = QPointF(nextDefault, nextDefault);
            info.mTimeStamp = tvlDateTimeToString(tvlNow().toUTC(), false);
            nextDefault += 0.2;
        }
        writeStartElement(IndexCardBinderID);
        writeAttribute(Attribute::Position, tvlPointFToString(info.mPosition));
        writeAttribute(Attribute::TimeStamp, info.mTimeStamp);
        writeCharacters(QString::number(child->mId));
        writeEndElement();
    }
    writeEndElement();
}

void TVLBinderWriter::writeKeywords(const TVLProjectNode *node)
{
    if (node->mKeywords.isEmpty())
        return;
    writeStartElement(Keywords);
    for (const int id : node->mKeywords)
        writeTextElement(KeywordID, QString::number(id));
    writeEndElement();
}

void TVLBinderWriter::writeReferences(const QList<TVLReference> &references)
{
    for (const TVLReference &reference : references) {
        writeStartElement(Reference);
        if (reference.isInternal())
            writeAttribute(Attribute::BinderID, QString::number(reference.mInternalLink));
        else
            writeAttribute(Attribute::Destination, QString::fromUtf8(reference.mUrl.toEncoded()));
        writeCharacters(reference.mTitle);
        writeEndElement();
    }
}
