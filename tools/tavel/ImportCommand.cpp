#include "Command.h"
#include "Importer.h"
#include "ItemFinder.h"
#include "ProjectOpener.h"
#include "TerminalProgress.h"
#include "WritableProject.h"

#include "TVLProjectFolderFormat.h"
#include "TVLProjectModel.h"
#include "TVLProjectNode.h"

#include <QCommandLineParser>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

QCommandLineOption intoOption()
{
    return QCommandLineOption(u"into"_s, u"The item to put them in, the Draft if not given."_s,
                              u"ITEM"_s);
}

QCommandLineOption splitOption()
{
    return QCommandLineOption(
        u"split"_s,
        u"Makes an item of each part of a file between two of these texts. A \\n in it is the end "
        "of a line, a \\\\ a backslash."_s,
        u"TEXT"_s);
}

/** What becomes of the notes of outlines, by its word. */
struct OutlineNotes
{
    QStringView word;
    TVL::OpmlImportType type;
};

constexpr OutlineNotes OutlineNotesWords[] = {
    {u"text", TVL::OpmlNoteAsText},
    {u"notes", TVL::OpmlNoteAsNotes},
    {u"synopsis", TVL::OpmlNoteAsSynopsis},
    {u"none", TVL::OpmlTitlesOnly},
};

QCommandLineOption outlineNotesOption()
{
    return QCommandLineOption(
        u"outline-notes"_s,
        u"What becomes of the notes of outlines and mind maps: text, notes, synopsis or none."_s,
        u"WHAT"_s, OutlineNotesWords[0].word.toString());
}

std::optional<TVL::OpmlImportType> outlineNotes(const QString &word)
{
    for (const OutlineNotes &notes : OutlineNotesWords) {
        if (notes.word == word)
            return notes.type;
    }
    return std::nullopt;
}

/** A text in which a backslash and a letter stand for what can't be typed on a command line. */
QString unescaped(const QString &text)
{
    QString plain;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar next = i + 1 < text.size() ? text.at(i + 1) : QChar();
        const bool isEscape = text.at(i) == u'\\' && (next == u'n' || next == u'\\');
        plain += isEscape ? (next == u'n' ? QChar(u'\n') : next) : text.at(i);
        i += isEscape ? 1 : 0;
    }
    return plain;
}

/** The item that takes the new ones. Null, and a line in @p error, if there is none that does. */
TVLProjectNode *findTarget(const TVLProjectModel &model, const QCommandLineParser &parser,
                           QString *error)
{
    if (!parser.isSet(intoOption())) {
        const QModelIndex draft = model.draftFolder();
        if (draft.isValid())
            return model.projectNode(draft);
        *error = u"the project has no Draft folder; say with --into where to put the files"_s;
        return nullptr;
    }
    const QString name = parser.value(intoOption());
    TVLProjectNode *node = findItem(model, name);
    const QModelIndex index = model.createIndex(node);
    if (!node)
        *error = u"there is no item '%1'"_s.arg(name);
    else if (model.isTrashFolder(index) || model.trashContains(index))
        *error = u"nothing can be imported into the Trash: '%1'"_s.arg(name);
    else
        return node;
    return nullptr;
}

QString counted(int count, const QString &thing)
{
    return u"%1 %2%3"_s.arg(count).arg(thing, count == 1 ? QString() : u"s"_s);
}

/** Imports a whole plan, and tells of each file that it can't; whether there is none. */
bool importAll(const QList<ImportEntry> &plan, Importer *importer, Console *console)
{
    bool isComplete = true;
    TerminalProgress progress(console);
    progress.begin(QString(), int(plan.size()));
    for (const ImportEntry &entry : plan) {
        if (QString error; !importer->import(entry, &error)) {
            console->complain(u"'%1' is not imported: %2"_s.arg(entry.path, error));
            isComplete = false;
        }
        progress.advance();
    }
    return isComplete;
}

ExitStatus runImport(const QCommandLineParser &parser, Console *console)
{
    const QStringList arguments = parser.positionalArguments();
    const QString &path = arguments.constFirst();
    const QString separator = unescaped(parser.value(splitOption()));
    if (parser.isSet(splitOption()) && separator.isEmpty())
        return console->refuse(u"the text of --split is empty"_s);

    const QString notesWord = parser.value(outlineNotesOption());
    const auto notes = outlineNotes(notesWord);
    if (!notes)
        return console->refuse(u"--outline-notes knows no '%1'"_s.arg(notesWord));

    // Before the project is touched.
    QString error;
    const auto plan = planImport(
        arguments.mid(1), TVLProjectFolderFormat::calcEnclosingPath(normalizedPath(path)), &error);
    if (!plan)
        return console->fail(error);
    const auto project = WritableProject::open(path, &error);
    if (!project)
        return console->fail(error);
    if (!project->canSave(&error))
        return console->fail(error);
    TVLProjectNode *target = findTarget(*project->model(), parser, &error);
    if (!target)
        return console->fail(error);

    Importer importer(project->model(), target, separator);
    importer.setOutlineNotes(*notes);
    const bool isComplete = importAll(*plan, &importer, console);
    const bool isChanged = importer.textCount() + importer.folderCount() > 0;
    if (isChanged && !project->save(&error))
        return console->fail(error);
    console->writeLine(oneLine(u"Imported %1 and %2 into '%3'"_s.arg(
        counted(importer.textCount(), u"text"_s), counted(importer.folderCount(), u"folder"_s),
        target->mTitle)));
    return isComplete ? ExitStatus::Done : ExitStatus::Failed;
}

} // namespace

Command importCommand()
{
    return {u"import"_s,
            u"Puts text files, outlines, and folders of them, into a project as new items."_s,
            {projectArgument(),
             {u"FILE"_s,
              u"Plain text (.txt), rich text (.rtf), an outline (.opml), a mind map (.mm), or a "
              "folder of such files."_s,
              CommandArgument::OnceOrMore}},
            {intoOption(), splitOption(), outlineNotesOption()},
            runImport};
}
