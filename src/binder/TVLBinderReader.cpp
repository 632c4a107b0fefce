#include "TVLBinderReader.h"

#include "TVLBinderFields_p.h"
#include "TVLBinderText.h"
#include "TVLBinderWords_p.h"
#include "TVLProjectNode.h"

#include "TCoreType.h"
#include "TVLDoors.h"
#include "TVLRegularFile.h"

#include <QDebug>
#include <QFile>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

using namespace TVLBinderTags;
namespace Attribute = TVLBinderAttributes;
namespace Words = TVLBinderWords;

/** A project-level element, what reads it, and as what the project takes it over at once; nothing
 * is taken over of what waits for all items, see settleSections(). */
struct TVLBinderReader::Section
{
    const QString &tag;
    SectionReader read;
    std::optional<TVLBinderSection> section;
};

TVLBinderReader::TVLBinderReader()
{
    // No binder declares entities, and a few lines of them can stand for any amount of text.
    setEntityExpansionLimit(0);
}

TVLBinderReader::TVLBinderReader(QIODevice *device)
    : TVLBinderReader()
{
    setDevice(device);
}

bool TVLBinderReader::readProject(TVLBinderProject *project, TVLProjectNode *root)
{
    mProject = project;
    mSections = mProject->beginBinderRead();
    const bool ok = readProjectPrivate(root);
    mProject->endBinderRead();
    mSections = nullptr;
    mProject = nullptr;
    return ok;
}

TVLProjectInfo TVLBinderReader::readProjectInfo()
{
    if (tokenType() == NoToken)
        readNextStartElement();
    const QXmlStreamAttributes attributes = this->attributes();
    TVLProjectInfo info;
    info.mVersion = attributes.value(Attribute::Version).toString();
    info.mBinderVersion = TVL::toBinderVersion(info.mVersion);
    info.mDevice = attributes.value(Attribute::Device).toString();
    if (attributes.hasAttribute(Attribute::Modified))
        info.mModified = tvlStringToDateTime(attributes.value(Attribute::Modified), false);
    info.mIsTemplate = attributes.value(Attribute::Template) == Words::Yes;
    info.mIsNewProject = attributes.value(Attribute::NewProject) == Words::Yes;
    info.mModId = QUuid::fromString(attributes.value(Attribute::ModID));
    info.mSyncId = QUuid::fromString(attributes.value(Attribute::SyncID));
    info.mChecksumsId = QUuid::fromString(attributes.value(Attribute::Checksums));
    return info;
}

TVLProjectInfo TVLBinderReader::readProjectInfo(const QString &filePath)
{
    TVLRegularFile file(filePath);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return TVLBinderReader(&file).readProjectInfo();
}

bool TVLBinderReader::readStartDocument(TVLBinderProject *project)
{
    const TVLProjectInfo info = readProjectInfo();
    mBinderVersion = info.mBinderVersion;
    mVersionText = info.mVersion;
    if (project)
        project->setInfo(info);
    return !info.mVersion.isEmpty();
}

bool TVLBinderReader::readProjectPrivate(TVLProjectNode *root)
{
    static const Section sections[] = {
        {LabelSettings, &TVLBinderReader::readLabels, TVLBinderSection::Labels},
        {StatusSettings, &TVLBinderReader::readStatusItems, TVLBinderSection::StatusItems},
        {TemplateFolderUUID, &TVLBinderReader::readTemplateFolderUuid, {}},
        {TemplateFolderID, &TVLBinderReader::readTemplateFolderId, {}},
        {Collections, &TVLBinderReader::readProjectCollections, {}},
        {Keywords, &TVLBinderReader::readProjectKeywords, TVLBinderSection::Keywords},
        {CustomMetaDataSettings, &TVLBinderReader::readCustomMetaDataSettings, {}},
        {ProjectProperties, &TVLBinderReader::readProjectProperties, TVLBinderSection::Properties},
        {ProjectTargets, &TVLBinderReader::readProjectTargets, TVLBinderSection::Targets},
        {Favorites, &TVLBinderReader::readFavorites, {}},
        {AutoCompleteList, &TVLBinderReader::readAutoCompleteList,
         TVLBinderSection::AutoCompleteList},
        {BackupSettings, &TVLBinderReader::readBackupSettings, {}},
        {FullScreenBackdrop, &TVLBinderReader::readFullScreenBackdrop,
         TVLBinderSection::FullScreenBackdrop},
        {ProjectReferences, &TVLBinderReader::readReferencesOfProject,
         TVLBinderSection::ProjectReferences},
        {PrintSettings, &TVLBinderReader::readPrintSettings, TVLBinderSection::Printer},
        {UserProjectData, &TVLBinderReader::readUserProjectData, {}},
    };

    if (!readStartDocument(mProject) || !expectElement(TavelinorProject, __LINE__))
        return false;
    while (readNextStartElement()) {
        if (name() == Binder) {
            if (!readNodeList(root))
                return false;
            continue;
        }
        const Section *section =
            std::find_if(std::begin(sections), std::end(sections),
                         [this](const Section &row) { return row.tag == name(); });
        if (section == std::end(sections)) {
            qDebug() << "Skipped Binder XML tag:" << name().toString();
            skipCurrentElement();
        } else if (!(this->*section->read)()
                   || (section->section && !mProject->adoptSection(*section->section))) {
            return false;
        }
    }
    return !hasError() && settleSections();
}

bool TVLBinderReader::expectElement(const QString &tag, int sourceLine)
{
    if (isStartElement() && name() == tag)
        return true;
    raiseIncorrectTagError(tag, name().toString(), sourceLine);
    return false;
}

QString TVLBinderReader::readText()
{
    return readElementText(SkipChildElements);
}

bool TVLBinderReader::readYes()
{
    return readText() == Words::Yes;
}

void TVLBinderReader::readNumber(int *number)
{
    bool ok = false;
    const int value = readText().toInt(&ok);
    if (ok)
        *number = value;
}

bool TVLBinderReader::readNodeList(TVLProjectNode *root)
{
    if (!isStartElement() || name() != Binder) {
        // The enclosing element is what the message names here.
        raiseIncorrectTagError(TavelinorProject, name().toString(), __LINE__);
        return false;
    }
    const bool ok = readNodes(root);
    if (mProject)
        mProject->enterNodes(std::exchange(mNewNodes, {}));
    return ok;
}

bool TVLBinderReader::readNodes(TVLProjectNode *root)
{
    while (readNextStartElement()) {
        if (!expectElement(BinderItem, __LINE__) || !readNode(root))
            return false;
    }
    return !hasError();
}

bool TVLBinderReader::readNode(TVLProjectNode *parent)
{
    if (!expectElement(BinderItem, __LINE__))
        return false;

    // The item that is being read, and whether the position is in its list of children.
    TVLProjectNode *node = startNode(parent);
    bool inChildren = false;
    for (;;) {
        if (readNextStartElement()) {
            if (inChildren) {
                if (!expectElement(BinderItem, __LINE__))
                    return false;
                node = startNode(node);
                inChildren = false;
            } else if (name() == Children) {
                inChildren = true;
            } else if (!readItemElement(node)) {
                // Where a part of the item itself found nothing wrong, the file ends in the item.
                if (error() == PrematureEndOfDocumentError)
                    raiseIncorrectTagError(BinderItem, name().toString(), __LINE__);
                return false;
            }
        } else if (inChildren && !hasError()) {
            inChildren = false;
        } else {
            if (!isEndElement() || name() != BinderItem) {
                raiseIncorrectTagError(BinderItem, name().toString(), __LINE__);
                return false;
            }
            node = node->mParent;
            if (node == parent)
                return true;
            inChildren = true;
        }
    }
}

TVLProjectNode *TVLBinderReader::startNode(TVLProjectNode *parent)
{
    const QXmlStreamAttributes attributes = this->attributes();
    int id = -1;
    QUuid uuid;
    if (mBinderVersion == TVL::BinderVersion1 || mBinderVersion == TVL::BinderVersion2) {
        bool ok = false;
        const int number = attributes.value(Attribute::ID).toInt(&ok);
        if (ok)
            id = number;
    }
    if (mBinderVersion == TVL::BinderVersion1)
        uuid = tvlNewUuid();
    else if (mBinderVersion != TVL::NoBinderVersion)
        uuid = QUuid::fromString(attributes.value(Attribute::UUID));

    TVLProjectNode *node = TVLProjectNode::appendUndated({id, uuid}, parent);
    if (mProject)
        mNewNodes.append(node);
    const QStringView created = attributes.value(Attribute::Created);
    const QStringView modified = attributes.value(Attribute::Modified);
    node->mCreated = mDates.toDateTime(created);
    // Many items were never changed, and finding the local time takes longest of all that
    // reading a date does.
    node->mModified = modified == created ? node->mCreated : mDates.toDateTime(modified);
    node->mNodeType = TVL::toNodeType(attributes.value(Attribute::Type));
    // In a file the flag is true only where it is written.
    node->mIncludeInCompile = false;
    return node;
}

bool TVLBinderReader::readItemElement(TVLProjectNode *node)
{
    const QStringView tag = name();
    if (tag == Title) {
        node->mTitle = readText();
    } else if (tag == MetaData) {
        return readMetaData(node);
    } else if (tag == TextSettings) {
        readTextSettings(node);
    } else if (tag == MediaSettings) {
        readMediaSettings(node);
    } else if (tag == CorkboardAndOutliner) {
        return readCorkboardAndOutliner(node);
    } else if (tag == Keywords) {
        return readKeywords(node);
    } else if (tag == References) {
        return readReferences(node);
    } else if (tag == DefaultChildTemplateID) {
        readDefaultChildTemplateId(node);
    } else {
        skipCurrentElement();
    }
    return true;
}

bool TVLBinderReader::readMetaData(TVLProjectNode *node)
{
    while (readNextStartElement()) {
        if (name() != CustomMetaData) {
            readMetaDataField(node);
            continue;
        }
        node->mCustomMetaData = readCustomMetaData();
        if (hasError())
            return false;
    }
    return true;
}

void TVLBinderReader::readMetaDataField(TVLProjectNodeProperties *properties)
{
    // Its name in older binders.
    const QStringView tag = name() == BreakBeforeParagraph ? QStringView(PageBreakBefore) : name();
    for (const TVLBinderField &field : tvlMetaDataFields()) {
        if (field.tag != tag)
            continue;
        if (const auto *id = std::get_if<TVLBinderField::Id>(&field.member))
            readNumber(&(properties->**id));
        else if (const auto *flag = std::get_if<TVLBinderField::Flag>(&field.member))
            properties->**flag = readYes();
        else if (const auto *text = std::get_if<TVLBinderField::Text>(&field.member))
            properties->**text = readText();
        else if (const auto *selection = std::get_if<TVLBinderField::Selection>(&field.member))
            readSelection(&(properties->**selection));
        return;
    }
    skipCurrentElement();
}

QMap<QString, QString> TVLBinderReader::readCustomMetaData()
{
    QMap<QString, QString> values;
    if (!expectElement(CustomMetaData, __LINE__))
        return values;
    while (readNextStartElement()) {
        if (name() != MetaDataItem) {
            skipCurrentElement();
            continue;
        }
        QString key;
        QString value;
        while (readNextStartElement()) {
            if (name() == FieldID)
                key = readText();
            else if (name() == Value)
                value = readText();
            else
                skipCurrentElement();
        }
        if (hasError())
            return values;
        if (key.isEmpty()) {
            raiseError(u"Meta data item key not found"_s, __LINE__);
            return values;
        }
        values.insert(key, value);
    }
    return values;
}

void TVLBinderReader::readSelection(QPair<int, int> *selection)
{
    parseSelection(readText(), selection);
}

void TVLBinderReader::parseSelection(QStringView text, QPair<int, int> *selection)
{
    const qsizetype comma = text.indexOf(u',');
    if (comma < 0)
        return;
    bool locationOk = false;
    bool lengthOk = false;
    const int location = text.first(comma).toInt(&locationOk);
    const int length = text.sliced(comma + 1).toInt(&lengthOk);
    if (locationOk && lengthOk)
        *selection = {location, length};
}

void TVLBinderReader::readTextSettings(TVLProjectNode *node)
{
    while (readNextStartElement()) {
        const QStringView tag = name();
        if (tag == TextMode) {
            const QString mode = readText();
            if (mode != Words::GeneralTextMode)
                node->mTextMode = mode;
        } else if (tag == TextSelection) {
            readSelection(&node->mTextSelection);
        } else if (tag == TypingAttributesRTFData) {
            node->mTypingAttributes = QByteArray::fromHex(readText().toLatin1());
        } else if (tag == Target) {
            readTarget(node);
        } else {
            skipCurrentElement();
        }
    }
}

void TVLBinderReader::readTarget(TVLProjectNode *node)
{
    const QXmlStreamAttributes attributes = this->attributes();
    node->mTargetType =
        tvlValueOf(Words::TargetTypes, attributes.value(Attribute::Type), TVL::WordsTarget);
    node->mTargetNotify = attributes.value(Attribute::Notify) == Words::Yes;
    if (attributes.hasAttribute(Attribute::AllowOver))
        node->mTargetAllowOver = attributes.value(Attribute::AllowOver) == Words::Yes;
    if (attributes.hasAttribute(Attribute::Buffer))
        node->mTargetBuffer = attributes.value(Attribute::Buffer).toInt();
    node->mTarget = readText().toInt();
}

void TVLBinderReader::readMediaSettings(TVLProjectNode *node)
{
    while (readNextStartElement()) {
        const QStringView tag = name();
        if (tag == ImageScaleFactor) {
            bool ok = false;
            const double factor = readText().toDouble(&ok);
            node->mImageScaleFactor = ok && qIsFinite(factor) ? factor : 1.0;
        } else if (tag == ImageRotation) {
            node->mImageRotation = tvlValueOf(Words::ImageRotations, readText(), 0);
        } else if (tag == ImageScalesProportionally) {
            node->mImageScalesProportionally = readYes();
        } else if (tag == OriginalURL) {
            node->mOriginalUrl = readText();
        } else if (tag == IsAlias) {
            node->mIsAlias = readYes();
        } else if (tag == CurrentPDFPage) {
            readNumber(&node->mCurrentPdfPage);
        } else {
            skipCurrentElement();
        }
    }
}

bool TVLBinderReader::readKeywords(TVLProjectNode *node)
{
    if (!expectElement(Keywords, __LINE__))
        return false;
    while (readNextStartElement()) {
        if (name() != KeywordID) {
            skipCurrentElement();
            continue;
        }
        bool ok = false;
        const int id = readText().toInt(&ok);
        if (hasError())
            return false;
        if (!ok) {
            raiseError(u"Expected integer text value"_s, __LINE__);
            return false;
        }
        node->mKeywords.append(id);
    }
    return !hasError();
}

bool TVLBinderReader::readReferences(TVLProjectNode *node)
{
    if (!expectElement(References, __LINE__))
        return false;
    node->mReferences = readReferenceList();
    return !hasError();
}

QList<TVLReference> TVLBinderReader::readReferenceList()
{
    QList<TVLReference> references;
    while (readNextStartElement()) {
        if (name() != Reference) {
            skipCurrentElement();
            continue;
        }
        const QXmlStreamAttributes attributes = this->attributes();
        TVLReference reference;
        if (attributes.hasAttribute(Attribute::Destination))
            reference.setUrl(QUrl::fromEncoded(attributes.value(Attribute::Destination).toUtf8()));
        bool ok = false;
        const int id = attributes.value(Attribute::BinderID).toInt(&ok);
        if (ok)
            reference.setInternalLink(id);
        reference.mTitle = readText();
        references.append(reference);
    }
    return references;
}

void TVLBinderReader::readDefaultChildTemplateId(TVLProjectNode *node)
{
    int id = -1;
    readNumber(&id);
    if (id >= 0)
        node->mDefaultChildTemplateId = id;
}

bool TVLBinderReader::readCorkboardAndOutliner(TVLProjectNode *node)
{
    while (readNextStartElement()) {
        if (name() == SelectedSubdocumentIDs)
            node->mSelectedSubdocumentIds = TCoreType::splitToIds(readText());
        else if (name() != CorkboardSettings)
            skipCurrentElement();
        else if (!readCorkboardSettings(node))
            return false;
    }
    return true;
}

bool TVLBinderReader::readCorkboardSettings(TVLProjectNode *node)
{
    if (!expectElement(CorkboardSettings, __LINE__))
        return false;
    node->mFreeformPositions.clear();
    while (readNextStartElement()) {
        if (name() == FreeformMode) {
            node->mFreeformMode = readYes();
        } else if (name() == FreeformCorkboardDocuments) {
            while (readNextStartElement()) {
                if (name() == IndexCardBinderID)
                    readFreeformPosition(node);
                else
                    skipCurrentElement();
            }
        } else {
            skipCurrentElement();
        }
    }
    return !hasError();
}

void TVLBinderReader::readFreeformPosition(TVLProjectNode *node)
{
    const QXmlStreamAttributes attributes = this->attributes();
    TVLFreeformPositionInfo info;
    info.mPosition = tvlStringToPointF(attributes.value(Attribute::Position));
    info.mTimeStamp = attributes.hasAttribute(Attribute::TimeStamp)
        ? attributes.value(Attribute::TimeStamp).toString()
        : tvlDateTimeToString(tvlNow().toUTC(), false);
    info.mId = readText().toInt();
    node->mFreeformPositions.insert(info.mId, info);
}

void TVLBinderReader::raiseError(const QString &message, int sourceLine)
{
    QXmlStreamReader::raiseError(message);
    qDebug().nospace() << '[' << sourceLine << "] " << message << " @ " << lineNumber() << ':'
                       << columnNumber();
}

void TVLBinderReader::raiseIncorrectTagError(const QString &expected, const QString &actual,
                                             int sourceLine)
{
    raiseError(u"Unexpected tag %1 on line %2.  Expected tag %3"_s.arg(actual)
                   .arg(lineNumber())
                   .arg(expected),
               sourceLine);
}
