#include "TVLBinderReader.h"

#include "TVLBinderFields_p.h"
#include "TVLBinderWords_p.h"

#include <QPrinter>

#include <algorithm>
#include <memory>
#include <utility>

using namespace TVLBinderTags;
namespace Attribute = TVLBinderAttributes;
namespace Words = TVLBinderWords;

namespace {

bool yesAttribute(const QXmlStreamAttributes &attributes, const QString &name)
{
    return attributes.value(name) == Words::Yes;
}

int numberAttribute(const QXmlStreamAttributes &attributes, const QString &name, int fallback)
{
    bool ok = false;
    const int number = attributes.value(name).toInt(&ok);
    return ok ? number : fallback;
}

/** Sets a margin to a length in points, unless the text is none. More digits than are written would
 * come back as another length. */
void setMargin(qreal *margin, const QString &text)
{
    bool ok = false;
    const double length = text.toDouble(&ok);
    if (ok && qIsFinite(length) && length >= 0)
        *margin = QString::number(length, 'g', 6).toDouble();
}

} // namespace

/** A printer's page set-up as it comes together from elements in any order. */
struct TVLBinderReader::PageSetup
{
    explicit PageSetup(const QPrinter &printer);
    /** What the printer can't do leaves it as it is. */
    void applyTo(QPrinter *printer) const;

    QPageSize::PageSizeId paper;
    QPageLayout::Orientation orientation;
    qreal left; ///< Margins, in points.
    qreal right;
    qreal top;
    qreal bottom;
    bool collates;
    bool reverses;
};

TVLBinderReader::PageSetup::PageSetup(const QPrinter &printer)
    : collates(printer.collateCopies())
    , reverses(printer.pageOrder() == QPrinter::LastPageFirst)
{
    const QPageLayout layout = printer.pageLayout();
    paper = layout.pageSize().id();
    orientation = layout.orientation();
    const QMarginsF margins = layout.margins(QPageLayout::Point);
    left = margins.left();
    right = margins.right();
    top = margins.top();
    bottom = margins.bottom();
}

void TVLBinderReader::PageSetup::applyTo(QPrinter *printer) const
{
    if (paper != printer->pageLayout().pageSize().id())
        printer->setPageSize(QPageSize(paper));
    printer->setPageOrientation(orientation);
    // The printer itself only asks that no margin by itself is beyond the paper.
    const QPageLayout layout = printer->pageLayout();
    const QSizeF page = layout.fullRect(QPageLayout::Point).size();
    QMarginsF margins = layout.margins(QPageLayout::Point);
    if (left + right < page.width()) {
        margins.setLeft(left);
        margins.setRight(right);
    }
    if (top + bottom < page.height()) {
        margins.setTop(top);
        margins.setBottom(bottom);
    }
    printer->setPageMargins(margins, QPageLayout::Point);
    printer->setCollateCopies(collates);
    printer->setPageOrder(reverses ? QPrinter::LastPageFirst : QPrinter::FirstPageFirst);
}

bool TVLBinderReader::readCustomMetaDataSettings()
{
    TVLCustomMetaDataSettings settings;
    while (readNextStartElement()) {
        if (name() != MetaDataField) {
            skipCurrentElement();
            continue;
        }
        const QXmlStreamAttributes attributes = this->attributes();
        TVLMetaDataField field;
        field.mId = attributes.value(Attribute::ID).toString();
        field.mWraps = yesAttribute(attributes, Attribute::Wraps);
        field.mColor = TVL::floatStringToColor(attributes.value(Attribute::Color));
        field.mTitle = readText();
        settings.append(field);
    }
    if (hasError())
        return false;
    mCustomMetaDataSettings = settings;
    return true;
}

bool TVLBinderReader::readProjectProperties()
{
    QMap<QString, QString> properties;
    while (readNextStartElement()) {
        const QString tag = name().toString();
        if (tvlProjectPropertyTags().contains(tag))
            properties.insert(tag, readText());
        else
            skipCurrentElement();
    }
    if (hasError())
        return false;
    mSections->mProperties.insert(properties);
    return true;
}

bool TVLBinderReader::readProjectTargets()
{
    const bool notify = yesAttribute(attributes(), Attribute::Notify);
    TVLDraftTarget draft;
    TVLSessionTarget session;
    while (readNextStartElement()) {
        if (name() == DraftTarget)
            draft = readDraftTarget();
        else if (name() == SessionTarget)
            session = readSessionTarget();
        else
            skipCurrentElement();
    }
    if (hasError())
        return false;
    mSections->mDraftTarget = draft;
    mSections->mSessionTarget = session;
    mSections->mNotifyTargets = notify;
    return true;
}

TVLDraftTarget TVLBinderReader::readDraftTarget()
{
    const QXmlStreamAttributes attributes = this->attributes();
    TVLDraftTarget target;
    target.mType = tvlValueOf(Words::CountTypes, attributes.value(Attribute::Type), target.mType);
    target.mCountIncludedOnly = yesAttribute(attributes, Attribute::CountIncludedOnly);
    target.mCurrentCompileGroupOnly = yesAttribute(attributes, Attribute::CurrentCompileGroupOnly);
    target.mShowOverrun = yesAttribute(attributes, Attribute::ShowOverrun);
    target.mBuffer = numberAttribute(attributes, Attribute::Buffer, target.mBuffer);
    target.mDeadline = attributes.value(Attribute::Deadline).toString();
    target.mIgnoreDeadline = yesAttribute(attributes, Attribute::IgnoreDeadline);
    readNumber(&target.mCount);
    return target;
}

TVLSessionTarget TVLBinderReader::readSessionTarget()
{
    const QXmlStreamAttributes attributes = this->attributes();
    TVLSessionTarget target;
    target.mType = tvlValueOf(Words::CountTypes, attributes.value(Attribute::Type), target.mType);
    target.mCountDraftOnly = yesAttribute(attributes, Attribute::CountDraftOnly);
    target.mAllowNegatives = yesAttribute(attributes, Attribute::AllowNegatives);
    target.mResetType = TVLSessionTarget::fromString(attributes.value(Attribute::ResetType));
    target.mFromDeadline = yesAttribute(attributes, Attribute::DeterminedFromDeadline);
    target.mCanWriteOnDeadlineDate = yesAttribute(attributes, Attribute::CanWriteOnDeadlineDate);
    target.mWritingDays = attributes.value(Attribute::WritingDays).toString();
    readNumber(&target.mCount);
    return target;
}

bool TVLBinderReader::readFavorites()
{
    while (readNextStartElement()) {
        if (name() != BinderID) {
            skipCurrentElement();
            continue;
        }
        int id = -1;
        readNumber(&id);
        mFavorites.append(id);
    }
    return !hasError();
}

bool TVLBinderReader::readAutoCompleteList()
{
    QList<TVLAutoCompleteItem> items;
    while (readNextStartElement()) {
        if (name() != Completion) {
            skipCurrentElement();
            continue;
        }
        TVLAutoCompleteItem item;
        const int scope = numberAttribute(attributes(), Attribute::Scope, item.mScope);
        item.mScope = std::max(scope, TVLAutoCompleteItem::EverywhereId);
        item.mText = readText();
        items.append(item);
    }
    if (hasError())
        return false;
    mSections->mAutoCompleteList = items;
    return true;
}

bool TVLBinderReader::readBackupSettings()
{
    bool included = true;
    while (readNextStartElement()) {
        if (name() == Exclude)
            included = !readYes();
        else
            skipCurrentElement();
    }
    if (hasError())
        return false;
    mBackupIncluded = included;
    return true;
}

bool TVLBinderReader::readFullScreenBackdrop()
{
    const QString type = attributes().value(Attribute::Type).toString();
    const QString text = readText();
    if (hasError())
        return false;
    if (type == Words::ItemBackdrop) {
        bool ok = false;
        const int id = text.toInt(&ok);
        if (ok && id >= 0)
            mSections->mFullScreenBackdrop = id;
    } else if (type == Words::ImageBackdrop && !text.isEmpty()) {
        mSections->mFullScreenBackdrop = text;
    }
    return true;
}

bool TVLBinderReader::readReferencesOfProject()
{
    QList<TVLReference> references;
    if (!readProjectReferences(&references))
        return false;
    mSections->mProjectReferences = references;
    return true;
}

bool TVLBinderReader::readProjectReferences(QList<TVLReference> *references)
{
    if (!expectElement(ProjectReferences, __LINE__))
        return false;
    references->append(readReferenceList());
    return !hasError();
}

bool TVLBinderReader::readPrintSettings()
{
    auto printer = std::make_shared<QPrinter>(QPrinter::PrinterResolution);
    PageSetup setup(*printer);
    while (readNextStartElement())
        readPageSetupElement(&setup);
    if (hasError())
        return false;
    setup.applyTo(printer.get());
    mSections->mPrinter = std::move(printer);
    return true;
}

void TVLBinderReader::readPageSetupElement(PageSetup *setup)
{
    const QString tag = name().toString();
    const QString text = readText();
    if (tag == PaperType)
        setup->paper = tvlValueOf(Words::PaperTypes, text, setup->paper);
    else if (tag == LeftMargin)
        setMargin(&setup->left, text);
    else if (tag == RightMargin)
        setMargin(&setup->right, text);
    else if (tag == TopMargin)
        setMargin(&setup->top, text);
    else if (tag == BottomMargin)
        setMargin(&setup->bottom, text);
    else if (tag == Orientation)
        setup->orientation = tvlValueOf(Words::Orientations, text, setup->orientation);
    else if (tag == Collates)
        setup->collates = text == Words::Yes;
    else if (tag == ReverseOrder)
        setup->reverses = text == Words::Yes;
}

bool TVLBinderReader::settleSections()
{
    const auto adopt = [this](TVLBinderSection section) { return mProject->adoptSection(section); };
    bool ok = true;
    if (!mTemplateFolders.isEmpty()) {
        mSections->mTemplateFolderNames = mTemplateFolders;
        ok = adopt(TVLBinderSection::TemplateFolder);
    }
    if (ok && mCollections) {
        mSections->mCollections = *mCollections;
        ok = adopt(TVLBinderSection::Collections);
    }
    if (ok && mCustomMetaDataSettings) {
        mSections->mCustomMetaDataSettings = *mCustomMetaDataSettings;
        ok = adopt(TVLBinderSection::CustomMetaDataSettings);
    }
    if (ok && !mFavorites.isEmpty()) {
        mSections->mFavorites = mFavorites;
        ok = adopt(TVLBinderSection::Favorites);
    }
    // The project counts as changed by it, which one that was read in part must not.
    if (ok && mBackupIncluded) {
        mSections->mBackupIncluded = *mBackupIncluded;
        ok = adopt(TVLBinderSection::Backup);
    }
    return ok;
}
