/*
 * Builds a project of a book, with its text:
 *
 *     example_book TARGET.tavel [TITLES_FILE]
 *     example_book TARGET.tavel --json-dir DIR
 *
 * The chapters' titles come from a text file with one title a line, from a folder with the files
 * chapter_1.json, chapter_2.json and so on, each an object with a `title` and a `text`, or, with
 * neither, from a list that lies in the program itself. Chapters without a text of their own get a
 * passage that lies there too. They go into five parts under the Draft, in order.
 */
#include "TVLProjectFolderFormat.h"
#include "TVLProjectModel.h"
#include "TVLTextDocument.h"
#include "TVLUnattendedMessageBoxes.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QRegularExpression>
#include <QTextCursor>
#include <QTextStream>

#include <memory>

namespace {

constexpr int PartCount = 5;

enum ExitStatus {
    Done = 0,
    Failed = 1,
    WrongUse = 2,
};

/** Identities of the book's own labels. */
enum Label {
    Opening = 0,
    Closing = 1,
};

int end(ExitStatus status, const QString &text)
{
    QTextStream(stderr) << "example_book: " << text << Qt::endl;
    return status;
}

// --- Chapters

struct Chapter
{
    QString title;
    QString text; ///< Paragraphs with an empty line between them.
};

/** The content of a text file; nothing, and the reason in @p error, when it can't be read. */
QString readTextFile(const QString &filePath, QString *error)
{
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = u"'%1': %2"_qs.arg(filePath, file.errorString());
        return {};
    }
    return QString::fromUtf8(file.readAll());
}

QList<Chapter> chaptersFromTitles(const QString &filePath, QString *error)
{
    const QString passage = readTextFile(u":/passage.txt"_qs, error);
    QList<Chapter> chapters;
    const QStringList lines = readTextFile(filePath, error).split(u'\n');
    for (const QString &line : lines) {
        if (const QString title = line.trimmed(); !title.isEmpty())
            chapters.append({title, passage});
    }
    return chapters;
}

/** The chapters in the order of their numbers, which isn't that of the file names. */
QList<Chapter> chaptersFromJsonDirectory(const QString &path, QString *error)
{
    static const QRegularExpression fileName(u"^chapter_([0-9]+)\\.json$"_qs);
    const QDir directory(path);
    QMap<int, Chapter> chapters;
    const QStringList names = directory.entryList(QDir::Files);
    for (const QString &name : names) {
        const QRegularExpressionMatch match = fileName.match(name);
        if (!match.hasMatch())
            continue;
        const QByteArray json = readTextFile(directory.filePath(name), error).toUtf8();
        const QJsonObject chapter = QJsonDocument::fromJson(json).object();
        const QString title = chapter.value(u"title").toString();
        if (title.isEmpty()) {
            *error = u"'%1' holds no title"_qs.arg(directory.filePath(name));
            return {};
        }
        chapters.insert(match.capturedView(1).toInt(), {title, chapter.value(u"text").toString()});
    }
    return chapters.values();
}

// --- The book

template <typename Item>
int identityOf(const QList<Item> &items, const QString &title)
{
    for (const Item &item : items) {
        if (item.mTitle == title)
            return item.mId;
    }
    return -1;
}

/** The folder of a part. The text that a blank project begins with becomes the first one. */
QModelIndex addPart(TVLProjectModel *model, int part)
{
    const QString title = u"Part %1"_qs.arg(part + 1);
    const QModelIndex draft = model->draftFolder();
    if (part >= model->rowCount(draft))
        return model->insertUserFolder(part, draft, title);
    const QModelIndex index = model->index(part, 0, draft);
    model->setType(index, TVL::Folder);
    model->setTitle(index, title);
    return index;
}

/** Writes a chapter's text into its document; the project saves it with all else. */
void setText(TVLProjectModel *model, const QModelIndex &index, const QString &text)
{
    static const QRegularExpression emptyLines(u"\\n\\s*\\n"_qs);
    TVLTextDocument *document = model->referenceText(index);
    QTextCursor cursor(document);
    cursor.beginEditBlock();
    const QStringList paragraphs = text.trimmed().split(emptyLines);
    for (qsizetype i = 0; i < paragraphs.size(); ++i) {
        if (i > 0)
            cursor.insertBlock();
        // Lines within a paragraph end where a page of the printed book was full.
        cursor.insertText(paragraphs.at(i).simplified());
    }
    cursor.endEditBlock();
    document->clearUndoRedoStacks();
    // With nobody holding it and nothing to undo, the next save lets the text go from memory.
    model->dereferenceItem(document);
}

void addChapters(TVLProjectModel *model, const QModelIndex &part, const QList<Chapter> &chapters)
{
    const int firstDraft = identityOf(model->statusItems(), u"First Draft"_qs);
    const int atEnd = -1;
    for (const Chapter &chapter : chapters) {
        const QModelIndex index =
            model->createIndex(model->insertNode(atEnd, part, TVL::Text, QString(), chapter.title));
        model->setStatusIdentity(index, firstDraft);
        setText(model, index, chapter.text);
    }
    if (chapters.isEmpty())
        return;
    const int done = identityOf(model->statusItems(), u"Done"_qs);
    const QModelIndex first = model->index(0, 0, part);
    model->setLabelIdentity(first, Opening);
    model->setStatusIdentity(first, done);
    if (chapters.size() > 1)
        model->setLabelIdentity(model->index(int(chapters.size()) - 1, 0, part), Closing);
}

void addBook(TVLProjectModel *model, const QList<Chapter> &chapters)
{
    model->setLabels({
        {-1, u"No Label"_qs, QColor()},
        {Opening, u"Opening"_qs, QColor(160, 200, 255)},
        {Closing, u"Closing"_qs, QColor(255, 200, 160)},
    });
    // The parts are as even as can be; the first ones take what is left over.
    qsizetype begin = 0;
    for (int part = 0; part < PartCount; ++part) {
        const qsizetype count =
            chapters.size() / PartCount + (part < chapters.size() % PartCount ? 1 : 0);
        addChapters(model, addPart(model, part), chapters.mid(begin, count));
        begin += count;
    }
}

int makeBook(const QString &path, const QList<Chapter> &chapters)
{
    if (!TVLProjectFolderFormat::isCompatible(QIODevice::WriteOnly, path))
        return end(WrongUse, u"the target must end in .tavel: '%1'"_qs.arg(path));
    const QString projectPath = TVLProjectFolderFormat::calcEnclosingPath(path);
    if (QFileInfo::exists(projectPath))
        return end(Failed, u"there is something at '%1' already"_qs.arg(projectPath));

    const std::unique_ptr<TVLProjectModel> model(
        TVLProjectModel::createBlankProjectInMemory(projectPath));
    // From here on the folder exists, and nobody else should open it.
    if (!TVLProjectFolderFormat::addLock(projectPath))
        return end(Failed, u"'%1' can't be locked"_qs.arg(projectPath));
    addBook(model.get(), chapters);
    const bool saved = model->save(true);
    // Removes the lock, among other things.
    model->prepareToDestroy();
    if (!saved)
        return end(Failed, u"'%1' can't be saved"_qs.arg(projectPath));
    QTextStream(stdout) << projectPath << Qt::endl;
    return Done;
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    // Nobody watches this program: a box that says what went wrong must not wait for an answer.
    const TVLUnattendedMessageBoxes boxes;
    QObject::connect(&boxes, &TVLUnattendedMessageBoxes::answered,
                     [](const auto &box) { QTextStream(stderr) << box.text << Qt::endl; });

    const QCommandLineOption jsonOption(
        u"json-dir"_qs, u"Takes the chapters from chapter_1.json and so on."_qs, u"DIR"_qs);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Builds a project of a book, with its text."_qs);
    parser.addHelpOption();
    parser.addOption(jsonOption);
    parser.addPositionalArgument(u"TARGET"_qs, u"The project to make, ending in .tavel."_qs);
    parser.addPositionalArgument(u"TITLES_FILE"_qs, u"A title a line."_qs, u"[TITLES_FILE]"_qs);
    if (!parser.parse(QCoreApplication::arguments()))
        return end(WrongUse, parser.errorText());
    if (parser.isSet(u"help"_qs))
        parser.showHelp();
    const QStringList arguments = parser.positionalArguments();
    const bool fromJson = parser.isSet(jsonOption);
    if (arguments.isEmpty() || arguments.size() > (fromJson ? 1 : 2))
        return end(WrongUse, u"give a target, and a file of titles or --json-dir"_qs);

    QString error;
    const QList<Chapter> chapters = fromJson
        ? chaptersFromJsonDirectory(parser.value(jsonOption), &error)
        : chaptersFromTitles(arguments.value(1, u":/titles.txt"_qs), &error);
    if (chapters.isEmpty())
        return end(Failed, error.isEmpty() ? u"there are no titles"_qs : error);
    return makeBook(arguments.constFirst(), chapters);
}
