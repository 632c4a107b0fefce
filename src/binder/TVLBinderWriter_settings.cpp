#include "TVLBinderWriter.h"

#include "TVLBinderFields_p.h"
#include "TVLBinderWords_p.h"

#include <QPrinter>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

using namespace TVLBinderTags;
namespace Attribute = TVLBinderAttributes;
namespace Words = TVLBinderWords;

void TVLBinderWriter::writeFlagAttribute(const QString &name, bool flag)
{
    writeAttribute(name, Words::yesOrNo(flag));
}

void TVLBinderWriter::writeCustomMetaDataSettings(const TVLCustomMetaDataSettings &settings)
{
    writeStartElement(CustomMetaDataSettings);
    for (const TVLMetaDataField &field : settings) {
        writeStartElement(MetaDataField);
        writeAttribute(Attribute::ID, field.mId);
        writeFlagAttribute(Attribute::Wraps, field.mWraps);
        if (field.mColor.isValid())
            writeAttribute(Attribute::Color, TVL::colorToFloatString(field.mColor));
        writeCharacters(field.mTitle);
        writeEndElement();
    }
    writeEndElement();
}

void TVLBinderWriter::writeProjectProperties(const TVLBinderProject *project)
{
    writeProperties(project->binderSections().mProperties);
}

void TVLBinderWriter::writeProperties(const QMap<QString, QString> &properties)
{
    bool hasStarted = false;
    for (const QString &tag : tvlProjectPropertyTags()) {
        const QString value = xmlText(properties.value(tag));
        if (value.isEmpty())
            continue;
        if (!std::exchange(hasStarted, true))
            writeStartElement(ProjectProperties);
        writeTextElement(tag, value);
    }
    if (hasStarted)
        writeEndElement();
}

void TVLBinderWriter::writeProjectTargets(const TVLDraftTarget &draft,
                                          const TVLSessionTarget &session, bool notify)
{
    writeStartElement(ProjectTargets);
    writeFlagAttribute(Attribute::Notify, notify);
    writeDraftTarget(draft);
    writeSessionTarget(session);
    writeEndElement();
}

void TVLBinderWriter::writeCountTypeAttribute(int type)
{
    writeAttribute(Attribute::Type, tvlWordOf(Words::CountTypes, type, u"Words").toString());
}

void TVLBinderWriter::writeDraftTarget(const TVLDraftTarget &target)
{
    writeStartElement(DraftTarget);
    writeCountTypeAttribute(target.mType);
    writeFlagAttribute(Attribute::CountIncludedOnly, target.mCountIncludedOnly);
    writeFlagAttribute(Attribute::CurrentCompileGroupOnly, target.mCurrentCompileGroupOnly);
    if (target.mShowOverrun)
        writeFlagAttribute(Attribute::ShowOverrun, true);
    if (target.mBuffer > 0)
        writeAttribute(Attribute::Buffer, QString::number(target.mBuffer));
    const QString deadline = xmlText(target.mDeadline);
    if (!deadline.isEmpty())
        writeAttribute(Attribute::Deadline, deadline);
    writeFlagAttribute(Attribute::IgnoreDeadline, target.mIgnoreDeadline);
    writeCharacters(QString::number(target.mCount));
    writeEndElement();
}

void TVLBinderWriter::writeSessionTarget(const TVLSessionTarget &target)
{
    writeStartElement(SessionTarget);
    writeCountTypeAttribute(target.mType);
    writeFlagAttribute(Attribute::CountDraftOnly, target.mCountDraftOnly);
    writeFlagAttribute(Attribute::AllowNegatives, target.mAllowNegatives);
    writeAttribute(Attribute::ResetType, TVLSessionTarget::toString(target.mResetType));
    writeFlagAttribute(Attribute::DeterminedFromDeadline, target.mFromDeadline);
    writeFlagAttribute(Attribute::CanWriteOnDeadlineDate, target.mCanWriteOnDeadlineDate);
    writeAttribute(Attribute::WritingDays, target.mWritingDays);
    writeCharacters(QString::number(target.mCount));
    writeEndElement();
}

void TVLBinderWriter::writeFavorites(const TVLBinderProject *project)
{
    writeFavorites(project->binderSections().mFavorites, project->idToUuid());
}

void TVLBinderWriter::writeFavorites(QList<int> ids, const QMap<int, QUuid> &items)
{
    // The third grammar has no ids: whatever is written here, no item would be found by it.
    const bool hasIds = mBinderVersion != TVL::BinderVersion3;
    const auto dead = ids.removeIf([&](int id) { return !hasIds || !items.contains(id); });
    if (dead > 0)
        tellLeftOut(u"%1 favorites that no item would be found by"_s.arg(dead));
    if (ids.isEmpty())
        return;
    writeStartElement(Favorites);
    for (const int id : std::as_const(ids))
        writeTextElement(BinderID, QString::number(id));
    writeEndElement();
}

void TVLBinderWriter::writeAutoCompleteList(const QList<TVLAutoCompleteItem> &items)
{
    writeStartElement(AutoCompleteList);
    for (const TVLAutoCompleteItem &item : items) {
        writeStartElement(Completion);
        writeAttribute(Attribute::Scope,
                       QString::number(std::max(item.mScope, TVLAutoCompleteItem::EverywhereId)));
        writeCharacters(item.mText);
        writeEndElement();
    }
    writeEndElement();
}

void TVLBinderWriter::writeBackupSettings(bool included)
{
    writeStartElement(BackupSettings);
    writeTextElement(Exclude, Words::yesOrNo(!included));
    writeEndElement();
}

void TVLBinderWriter::writeFullScreenBackdrop(const QVariant &value)
{
    const bool isItem = value.typeId() == QMetaType::Int;
    const QString text = xmlText(value.toString());
    if (value.isValid() && !isItem && value.typeId() != QMetaType::QString)
        tellLeftOut(u"a backdrop that is neither an item nor a path"_s);
    if (isItem ? value.toInt() < 0 : value.typeId() != QMetaType::QString || text.isEmpty())
        return;
    writeStartElement(FullScreenBackdrop);
    writeAttribute(Attribute::Type,
                   (isItem ? Words::ItemBackdrop : Words::ImageBackdrop).toString());
    writeCharacters(text);
    writeEndElement();
}

void TVLBinderWriter::writeProjectReferences(const QList<TVLReference> &references)
{
    writeStartElement(ProjectReferences);
    writeReferences(references);
    writeEndElement();
}

void TVLBinderWriter::writePrintSettings(const QPrinter *printer)
{
    const QPageLayout layout = printer->pageLayout();
    const QMarginsF margins = layout.margins(QPageLayout::Point);
    const auto writeMargin = [this](const QString &tag, qreal margin) {
        writeTextElement(tag, QString::number(margin, 'g', 6));
    };

    writeStartElement(PrintSettings);
    writeTextElement(PaperType,
                     tvlWordOf(Words::PaperTypes, layout.pageSize().id(), u"A4").toString());
    writeMargin(LeftMargin, margins.left());
    writeMargin(RightMargin, margins.right());
    writeMargin(TopMargin, margins.top());
    writeMargin(BottomMargin, margins.bottom());
    writeTextElement(Orientation,
                     tvlWordOf(Words::Orientations, layout.orientation(), u"Portrait").toString());
    writeTextElement(Collates, Words::yesOrNo(printer->collateCopies()));
    writeTextElement(ReverseOrder, Words::yesOrNo(printer->pageOrder() == QPrinter::LastPageFirst));
    writeEndElement();
}
