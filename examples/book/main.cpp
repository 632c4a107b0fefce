/*
 * Builds a project whose binder is a book:
 *
 *     example_book TARGET.tavel [TITLES_FILE]
 *     example_book TARGET.tavel --json-dir DIR
 *
 * The chapters' titles come from a text file with one title a line, from a folder with the files
 * chapter_1.json, chapter_2.json and so on, each an object with a `title`, or, with neither, from a
 * list that lies in the program itself. They go into five parts under the Draft, in order.
 */
#include "TVLProjectFolderFormat.h"
#include "TVLProjectModel.h"
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

// --- Titles

QStringList titlesFromTextFile(const QString &filePath, QString *error)
{
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = u"'%1': %2"_qs.arg(filePath, file.errorString());
        return {};
    }
    QStringList titles;
    QTextStream stream(&file);
    for (QString line; stream.readLineInto(&line);) {
        if (const QString title = line.trimmed(); !title.isEmpty())
            titles.append(title);
    }
    return titles;
}

QString titleFromJsonFile(const QString &filePath)
{
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.readAll()).object().value(u"title").toString();
}

/** The titles in the order of the chapters' numbers, which isn't that of the file names. */
QStringList titlesFromJsonDirectory(const QString &path, QString *error)
{
    static const QRegularExpression fileName(u"^chapter_([0-9]+)\\.json$"_qs);
    const QDir directory(path);
    QMap<int, QString> titles;
    const QStringList names = directory.entryList(QDir::Files);
    for (const QString &name : names) {
        const QRegularExpressionMatch match = fileName.match(name);
        if (!match.hasMatch())
            continue;
        const QString title = titleFromJsonFile(directory.filePath(name));
        if (title.isEmpty()) {
            *error = u"'%1' holds no title"_qs.arg(directory.filePath(name));
            return {};
        }
        titles.insert(match.capturedView(1).toInt(), title);
    }
    return titles.values();
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

void addChapters(TVLProjectModel *model, const QModelIndex &part, const QStringList &titles)
{
    const int firstDraft = identityOf(model->statusItems(), u"First Draft"_qs);
    const int atEnd = -1;
    for (const QString &title : titles) {
        const QModelIndex chapter =
            model->createIndex(model->insertNode(atEnd, part, TVL::Text, QString(), title));
        model->setStatusIdentity(chapter, firstDraft);
    }
    if (titles.isEmpty())
        return;
    const int done = identityOf(model->statusItems(), u"Done"_qs);
    const QModelIndex first = model->index(0, 0, part);
    model->setLabelIdentity(first, Opening);
    model->setStatusIdentity(first, done);
    if (titles.size() > 1)
        model->setLabelIdentity(model->index(int(titles.size()) - 1, 0, part), Closing);
}

void addBook(TVLProjectModel *model, const QStringList &titles)
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
            titles.size() / PartCount + (part < titles.size() % PartCount ? 1 : 0);
        addChapters(model, addPart(model, part), titles.mid(begin, count));
        begin += count;
    }
}

int makeBook(const QString &path, const QStringList &titles)
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
    addBook(model.get(), titles);
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
        u"json-dir"_qs, u"Takes the titles from chapter_1.json and so on."_qs, u"DIR"_qs);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Builds a project whose binder is a book."_qs);
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
    const QStringList titles = fromJson
        ? titlesFromJsonDirectory(parser.value(jsonOption), &error)
        : titlesFromTextFile(arguments.value(1, u":/titles.txt"_qs), &error);
    if (titles.isEmpty())
        return end(Failed, error.isEmpty() ? u"there are no titles"_qs : error);
    return makeBook(arguments.constFirst(), titles);
}
