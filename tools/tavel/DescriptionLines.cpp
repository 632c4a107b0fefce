#include "ItemTexts.h"
#include "ProjectDescription.h"

#include "TVLProjectFolderFormat.h"

using namespace Qt::StringLiterals;

namespace {

using Lines = QList<QPair<QString, QString>>;

QString toText(const QJsonValue &value)
{
    return value.isNull() ? u"unknown"_s : value.toString();
}

QString inAllAndDraft(qint64 all, qint64 draft)
{
    return u"%1, %2 of them in the draft"_s.arg(all).arg(draft);
}

QString itemsText(qsizetype count)
{
    return count == 1 ? u"1 item"_s : u"%1 items"_s.arg(count);
}

/** A title with what follows it: nothing stands where a part is empty. */
QString withParts(const QString &title, const QStringList &parts)
{
    QString text = title;
    for (const QString &part : parts) {
        if (!part.isEmpty())
            text += (text.isEmpty() ? QString() : u" "_s) + part;
    }
    return text;
}

QString inBrackets(const QStringList &notes)
{
    QStringList filled = notes;
    filled.removeAll(QString());
    return filled.isEmpty() ? QString() : u'(' + filled.join(u", "_s) + u')';
}

QString noteIf(bool condition, const QString &note)
{
    return condition ? note : QString();
}

void addHead(const ProjectDescription &project, Lines *lines)
{
    const TVLProjectInfo &info = project.info;
    *lines += Lines{
        {u"Name"_s, project.name},
        {u"Path"_s, project.path},
        {u"Format version"_s, QString::number(project.formatVersion)},
        {u"Binder version"_s, u"%1 (%2)"_s.arg(info.mBinderVersion).arg(info.mVersion)},
    };
}

void addProperties(const ProjectDescription &project, Lines *lines)
{
    static const QHash<QString, QString> names{
        {TVLProjectFolderFormat::ProjectTitleTag, u"Title"_s},
        {TVLProjectFolderFormat::AbbreviatedTitleTag, u"Short title"_s},
        {TVLProjectFolderFormat::FullNameTag, u"Author"_s},
        {TVLProjectFolderFormat::LastNameTag, u"Surname"_s},
        {TVLProjectFolderFormat::FirstNameTag, u"Forename"_s},
    };
    for (const auto &[tag, value] : project.properties) {
        if (!value.isEmpty())
            lines->append({names.value(tag), value});
    }
}

void addCounts(const ProjectDescription &project, Lines *lines)
{
    lines->append({u"Items"_s, QString::number(project.items)});
    for (int type = 0; type < ProjectDescription::TypeCount; ++type) {
        if (const int count = project.typeCounts.at(std::size_t(type)))
            lines->append({u"  "_s + TVL::wordOf(TVL::NodeType(type)), QString::number(count)});
    }
    const TextCounts &texts = project.texts;
    lines->append({u"Words"_s, inAllAndDraft(texts.all.words, texts.draft.words)});
    lines->append({u"Characters"_s, inAllAndDraft(texts.all.characters, texts.draft.characters)});
    if (texts.unreadable > 0)
        lines->append({u"Unreadable texts"_s, QString::number(texts.unreadable)});
}

void addLabelsAndStatusItems(const ProjectDescription &project, Lines *lines)
{
    const QString isDefault = u"(default)"_s;
    lines->append({u"Labels"_s, u"called '%1'"_s.arg(project.labelTitle)});
    for (const TVLLabel &label : project.labels)
        lines->append({u"Label %1"_s.arg(label.mId),
                       withParts(label.mTitle,
                                 {colorName(label.mColor),
                                  noteIf(label.mId == project.defaultLabelId, isDefault)})});
    lines->append({u"Status items"_s, u"called '%1'"_s.arg(project.statusTitle)});
    for (const TVLStatusItem &item : project.statusItems)
        lines->append(
            {u"Status %1"_s.arg(item.mId),
             withParts(item.mTitle, {noteIf(item.mId == project.defaultStatusId, isDefault)})});
}

/** The indentation of a keyword; from some depth on it grows no further. */
QString indent(int depth)
{
    constexpr int Deepest = 32;
    return QString(2 * qMin(depth, Deepest), u' ');
}

void addKeywordsAndFields(const ProjectDescription &project, Lines *lines)
{
    for (const KeywordUse &use : project.keywords)
        lines->append(
            {u"Keyword %1"_s.arg(use.keyword.mId),
             indent(use.depth)
                 + withParts(use.keyword.mTitle,
                             {colorName(use.keyword.mColor), inBrackets({itemsText(use.items)})})});
    for (const FieldUse &use : project.fields)
        lines->append({u"Field %1"_s.arg(use.field.mId),
                       withParts(use.field.mTitle,
                                 {colorName(use.field.mColor),
                                  inBrackets({noteIf(use.field.mWraps, u"wraps"_s),
                                              itemsText(use.items)})})});
}

void addLists(const ProjectDescription &project, Lines *lines)
{
    for (const TVLCollectionMetaData &collection : project.collections) {
        const bool hasMembers = collection.mType == TVL::ArbitraryCollection;
        lines->append(
            {u"Collection"_s,
             withParts(collection.mTitle,
                       {inBrackets({TVL::wordOf(collection.mType),
                                    noteIf(hasMembers, itemsText(collection.mIds.size()))})})});
    }
    for (const TitledId &favorite : project.favorites)
        lines->append({u"Favorite"_s, withParts(favorite.title, {u"(#%1)"_s.arg(favorite.id)})});
    for (const TVLReference &reference : project.references) {
        const QString target = reference.isInternal() ? u"#%1"_s.arg(reference.mInternalLink)
                                                      : reference.mUrl.toString();
        lines->append({u"Reference"_s, withParts(reference.mTitle, {inBrackets({target})})});
    }
    for (const TitledId &note : project.notes)
        lines->append({u"Project note %1"_s.arg(note.id), note.title});
    if (project.completions > 0)
        lines->append({u"Completions"_s, QString::number(project.completions)});
}

QString targetText(int count, int type)
{
    return u"%1 %2"_s.arg(count).arg(countTypeWord(type).toLower());
}

void addTargets(const ProjectDescription &project, Lines *lines)
{
    const TVLDraftTarget &draft = project.draftTarget;
    if (draft != TVLDraftTarget()) {
        const QStringList notes{
            noteIf(draft.mCountIncludedOnly, u"of what is compiled"_s),
            noteIf(draft.mCurrentCompileGroupOnly, u"of the current compile group"_s),
            noteIf(draft.mShowOverrun, u"shows overrun"_s),
            noteIf(draft.mBuffer > 0, u"buffer %1"_s.arg(draft.mBuffer)),
            noteIf(!draft.mDeadline.isEmpty(), u"deadline "_s + draft.mDeadline),
            noteIf(draft.mIgnoreDeadline, u"deadline ignored"_s)};
        lines->append({u"Draft target"_s,
                       withParts(targetText(draft.mCount, draft.mType), {inBrackets(notes)})});
    }
    const TVLSessionTarget &session = project.sessionTarget;
    if (session != TVLSessionTarget()) {
        const QStringList notes{
            noteIf(session.mCountDraftOnly, u"of the draft"_s),
            noteIf(session.mAllowNegatives, u"negatives allowed"_s),
            u"reset "_s + TVLSessionTarget::toString(session.mResetType),
            noteIf(session.mFromDeadline, u"from the deadline"_s),
            noteIf(session.mCanWriteOnDeadlineDate, u"deadline's day included"_s),
            noteIf(!session.mWritingDays.isEmpty(), u"writing days "_s + session.mWritingDays)};
        lines->append({u"Session target"_s,
                       withParts(targetText(session.mCount, session.mType), {inBrackets(notes)})});
    }
    if (project.notifiesTargets)
        lines->append({u"Notify"_s, u"when a target is reached"_s});
}

void addSave(const ProjectDescription &project, Lines *lines)
{
    const TVLProjectInfo &info = project.info;
    *lines += Lines{
        {u"In backups"_s, project.isInBackups ? u"yes"_s : u"no"_s},
        {u"Saved by"_s, toText(textOrNull(info.mDevice))},
        {u"Saved at"_s, toText(toJson(info.mModified))},
        {u"Save"_s, toText(toJson(info.mModId))},
    };
}

QString lockText(const LockDescription &lock)
{
    QString what;
    switch (lock.state) {
    case TVLProjectFolderFormat::NotLocked:
        return u"no"_s;
    case TVLProjectFolderFormat::LockedHere:
        what = u"by this program and user"_s;
        break;
    case TVLProjectFolderFormat::LockedElsewhere:
        what = u"by a lock that was copied with the project"_s;
        break;
    case TVLProjectFolderFormat::LockedByOtherProgram:
        what = u"by another program of this user"_s;
        break;
    default:
        what = u"by someone else"_s;
    }
    return u"%1: user %2 on host %3, program %4"_s.arg(what, toText(textOrNull(lock.user)),
                                                       toText(textOrNull(lock.host)),
                                                       toText(textOrNull(lock.program)));
}

} // namespace

QList<QPair<QString, QString>> toLines(const ProjectDescription &project)
{
    Lines lines;
    addHead(project, &lines);
    addProperties(project, &lines);
    addCounts(project, &lines);
    addLabelsAndStatusItems(project, &lines);
    addKeywordsAndFields(project, &lines);
    addLists(project, &lines);
    addTargets(project, &lines);
    addSave(project, &lines);
    lines.append({u"Locked"_s, lockText(project.lock)});
    return lines;
}
