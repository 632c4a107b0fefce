#include "DocumentFixtures.h"
#include "StorageFixtures.h"
#include "TVLProjectFolderFormat.h"
#include "TVLTextDoc.h"
#include "TVLTextFormat.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QTest>
#include <QTextCursor>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;

constexpr TVL::DocumentType AllTypes[] = {TVL::MainText, TVL::NotesText, TVL::SynopsisText};

/** A row for each type that is written, with the message of a failure but for the error's text. */
void addWrittenTypeRows()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("message");

    QTest::newRow("main text") << int(TVL::MainText)
                               << u"Failed saving text for document with id: 12 \nError: '%1'"_s;
    QTest::newRow("notes") << int(TVL::NotesText)
                           << u"Failed saving document notes with id: 12 \nError: '%1'"_s;
    QTest::newRow("synopsis") << int(TVL::SynopsisText)
                              << u"Failed saving document synopsis with id: 12 \nError: '%1'"_s;
}

bool writeEverything(const TestProject &project, LoadedItem *item, QStringList *errors = nullptr)
{
    const Format format(project.path(), TVL::FormatVersion18);
    return format.writeDocuments(item->node(), errors);
}

/** The text of a document as it is on disk. */
QString textOnDisk(const TestProject &project, TVL::DocumentType type)
{
    LoadedItem item;
    QString error;
    if (!Format::readDocument(project.path(), item.node(), item.document(type), &error))
        return u"unreadable: "_s + error;
    return item.document(type)->toPlainText();
}

QList<TVLTextCommentLink> commentsOnDisk(const TestProject &project)
{
    LoadedItem item;
    TVLProjectLinksAndComments extras;
    if (!Format::parseLinksAndComments(project.path(), item.node(), &extras, nullptr))
        return {TVLTextCommentLink(u"unreadable"_s, {})};
    return extras.mComments;
}

bool exists(const TestProject &project, TVL::DocumentType type)
{
    return QFileInfo::exists(project.path(docsPath(type)));
}

/** Edits all documents, and hangs a comment on the main text. */
void editAll(LoadedItem *item, const QString &text)
{
    for (const TVL::DocumentType type : AllTypes)
        item->edit(type, text);
    TVLTextDoc::setComment(item->text(), {0, 1}, numberedComment(1));
}

} // namespace

class TstWriteDocuments : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // One document
    void noDocumentIsAFailureWithoutAMessage();
    void aTextSurvives_data();
    void aTextSurvives();
    void aSynopsisIsPlainUtf8();
    void formatsAndInlineNotesSurvive();
    void theLiveDocumentIsNotTouched();
    void theSameTextGivesTheSameBytes();
    void aShorterTextLeavesNothingOfALongerOne_data();
    void aShorterTextLeavesNothingOfALongerOne();
    void aFileIsOverwrittenInPlace_data();
    void aFileIsOverwrittenInPlace();
    void aMissingFolderIsMade();
    void aProjectCanBeNamedByItsBinder();
    void anEmptyDocumentHasNoFile_data();
    void anEmptyDocumentHasNoFile();
    void blanksAloneAreAText();
    void aFileOfAnEmptyDocumentThatCannotBeRemovedIsReported_data();
    void aFileOfAnEmptyDocumentThatCannotBeRemovedIsReported();
    void aFolderThatCannotBeMadeIsReported_data();
    void aFolderThatCannotBeMadeIsReported();
    void aFileThatCannotBeOpenedIsReported_data();
    void aFileThatCannotBeOpenedIsReported();
    void aFileThatIsALinkIsNotWritten_data();
    void aFileThatIsALinkIsNotWritten();

    // All documents of an item
    void savedDocumentsAreNotTouched();
    void onlyUnsavedDocumentsAreWritten_data();
    void onlyUnsavedDocumentsAreWritten();
    void documentsThatAreNotLoadedAreLeftOut();
    void writingMarksDocumentsAsSaved();
    void anUnreadableDocumentIsNeverWritten_data();
    void anUnreadableDocumentIsNeverWritten();
    void aFolderInTheTextsPlaceIsLeftAlone();
    void aClearedTextLosesItsFile();
    void removedCommentsLoseTheirFile();
    void commentsAreWrittenWithTheMainTextAlone();

    // Failures
    void aFailureIsReportedAndLeavesTheDocumentUnsaved_data();
    void aFailureIsReportedAndLeavesTheDocumentUnsaved();
    void aFailedTextDoesNotStopTheOthers();
    void allFailuresAreInTheList();
    void commentsOfAFailedTextAreNotWritten();
    void anUnreadableCommentsFileIsNeverWritten_data();
    void anUnreadableCommentsFileIsNeverWritten();
    void failedCommentsAreReportedAndWrittenAgainLater_data();
    void failedCommentsAreReportedAndWrittenAgainLater();
    void aLaterSaveTriesAgain();
    void errorsAreReplaced();
    void errorsNeedNotBeAskedFor();
};

void TstWriteDocuments::noDocumentIsAFailureWithoutAMessage()
{
    const TestProject project;
    LoadedItem item;
    QString error;
    QVERIFY(!Format::writeDocument(project.path(), item.node(), nullptr, &error));
    QVERIFY(error.isEmpty());
    QVERIFY(project.files().isEmpty());
}

void TstWriteDocuments::aTextSurvives_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");

    const QString texts[] = {u"Once"_s, u"a\nb\n\n c \n"_s, u"{\\rtf1 <b>&amp;}"_s,
                             u"\u00e4 \u6f22 \U0001d11e \u2019"_s, QString(100'000, u'x')};
    for (const TVL::DocumentType type : AllTypes) {
        for (qsizetype i = 0; i < std::ssize(texts); ++i)
            QTest::addRow("type %d, text %d", int(type), int(i)) << int(type) << texts[i];
    }
}

void TstWriteDocuments::aTextSurvives()
{
    QFETCH(int, type);
    QFETCH(QString, text);

    const TestProject project;
    LoadedItem item;
    item.edit(TVL::DocumentType(type), text);
    QString error = u"untouched"_s;
    QVERIFY(Format::writeDocument(project.path(), item.node(),
                                  item.document(TVL::DocumentType(type)), &error));
    QCOMPARE(error, u"untouched"_s);
    QCOMPARE(project.files().keys(), QStringList(docsPath(TVL::DocumentType(type))));
    QCOMPARE(textOnDisk(project, TVL::DocumentType(type)), text);
}

void TstWriteDocuments::aSynopsisIsPlainUtf8()
{
    const TestProject project;
    LoadedItem item;
    item.edit(TVL::SynopsisText, u"a\n\u00e4 \u6f22"_s);
    QTextCursor cursor(item.synopsis());
    cursor.select(QTextCursor::Document);
    QTextCharFormat bold;
    bold.setFontWeight(QFont::Bold);
    cursor.mergeCharFormat(bold);
    QVERIFY(Format::writeDocument(project.path(), item.node(), item.synopsis(), nullptr));
    QCOMPARE(project.readFile(docsPath(TVL::SynopsisText)), QByteArray("a\n\xc3\xa4 \xe6\xbc\xa2"));
}

void TstWriteDocuments::formatsAndInlineNotesSurvive()
{
    const TestProject project;
    LoadedItem item;
    item.edit(TVL::MainText, u"abcdef"_s);
    QTextCursor cursor(item.text());
    cursor.setPosition(2);
    cursor.setPosition(4, QTextCursor::KeepAnchor);
    QTextCharFormat format;
    format.setFontItalic(true);
    format.setProperty(TVLTextFormat::InlineAnnotation, true);
    cursor.mergeCharFormat(format);
    QVERIFY(Format::writeDocument(project.path(), item.node(), item.text(), nullptr));

    LoadedItem again;
    QVERIFY(Format::readDocument(project.path(), again.node(), again.text(), nullptr));
    QCOMPARE(again.text()->toPlainText(), u"abcdef"_s);
    for (int position = 1; position <= 6; ++position) {
        QTextCursor at(again.text());
        at.setPosition(position);
        const bool inNote = position == 3 || position == 4;
        QCOMPARE(at.charFormat().fontItalic(), inNote);
        QCOMPARE(at.charFormat().boolProperty(TVLTextFormat::InlineAnnotation), inNote);
    }
}

void TstWriteDocuments::theLiveDocumentIsNotTouched()
{
    const TestProject project;
    LoadedItem item;
    item.edit(TVL::MainText, u"abc"_s);
    QTextCursor cursor(item.text());
    cursor.select(QTextCursor::Document);
    QTextCharFormat format;
    format.setProperty(TVLTextFormat::InlineAnnotation, true);
    cursor.mergeCharFormat(format);
    item.text()->setModified(true);
    const int steps = item.text()->availableUndoSteps();
    const int revision = item.text()->revision();
    QVERIFY(Format::writeDocument(project.path(), item.node(), item.text(), nullptr));
    QCOMPARE(item.text()->toPlainText(), u"abc"_s);
    QCOMPARE(item.text()->availableUndoSteps(), steps);
    QCOMPARE(item.text()->revision(), revision);
    QVERIFY(item.text()->isUndoRedoEnabled());
    QVERIFY(item.text()->isModified());
    QVERIFY(!item.text()->isSaved());
}

void TstWriteDocuments::theSameTextGivesTheSameBytes()
{
    const TestProject project;
    LoadedItem item;
    editAll(&item, u"Once upon a time"_s);
    QVERIFY(writeEverything(project, &item));
    const auto first = project.files();
    QCOMPARE(first.size(), 4);
    for (const TVL::DocumentType type : AllTypes)
        item.document(type)->setSaved(false);
    QVERIFY(writeEverything(project, &item));
    QCOMPARE(project.files(), first);
}

void TstWriteDocuments::aShorterTextLeavesNothingOfALongerOne_data()
{
    addWrittenTypeRows();
}

void TstWriteDocuments::aShorterTextLeavesNothingOfALongerOne()
{
    QFETCH(int, type);

    const TestProject project;
    project.writeFile(docsPath(TVL::DocumentType(type)), QByteArray(100'000, 'x'));
    LoadedItem item;
    item.edit(TVL::DocumentType(type), u"Once"_s);
    QVERIFY(writeEverything(project, &item));
    QCOMPARE(textOnDisk(project, TVL::DocumentType(type)), u"Once"_s);
}

void TstWriteDocuments::aFileIsOverwrittenInPlace_data()
{
    addWrittenTypeRows();
}

void TstWriteDocuments::aFileIsOverwrittenInPlace()
{
    QFETCH(int, type);

    const TestProject project;
    const QString filePath = docsPath(TVL::DocumentType(type));
    project.writeFile(filePath, "old");
    QFile openBefore(project.path(filePath));
    QVERIFY(openBefore.open(QIODevice::ReadOnly));
    LoadedItem item;
    item.edit(TVL::DocumentType(type), u"Once"_s);
    QVERIFY(writeEverything(project, &item));
    // A file put in its place would leave the old one to who has it open.
    QVERIFY(openBefore.readAll().contains("Once"));
}

void TstWriteDocuments::aMissingFolderIsMade()
{
    const TestProject project;
    LoadedItem item;
    editAll(&item, u"Once"_s);
    QVERIFY(writeEverything(project, &item));
    QCOMPARE(project.files().keys(),
             (QStringList{docsPath(TVL::CommentsFile), docsPath(TVL::MainText),
                          docsPath(TVL::NotesText), docsPath(TVL::SynopsisText)}));
}

void TstWriteDocuments::aProjectCanBeNamedByItsBinder()
{
    const TestProject project;
    LoadedItem item;
    item.edit(TVL::NotesText, u"Once"_s);
    for (const QString &path : {project.path(), project.path() + u'/', project.binderPath()}) {
        QVERIFY(Format::writeDocument(path, item.node(), item.notes(), nullptr));
        QCOMPARE(project.files().keys(), QStringList(docsPath(TVL::NotesText)));
    }
}

void TstWriteDocuments::anEmptyDocumentHasNoFile_data()
{
    addWrittenTypeRows();
}

void TstWriteDocuments::anEmptyDocumentHasNoFile()
{
    QFETCH(int, type);

    const TestProject project;
    project.writeFile(docsPath(TVL::DocumentType(type)), "old");
    LoadedItem item;
    TVLTextDocument *document = item.document(TVL::DocumentType(type));
    QVERIFY(Format::writeDocument(project.path(), item.node(), document, nullptr));
    QVERIFY(!exists(project, TVL::DocumentType(type)));
    QVERIFY(Format::writeDocument(project.path(), item.node(), document, nullptr));
    QVERIFY(!exists(project, TVL::DocumentType(type)));
}

void TstWriteDocuments::blanksAloneAreAText()
{
    const TestProject project;
    for (const TVL::DocumentType type : AllTypes) {
        LoadedItem item;
        item.edit(type, u" "_s);
        QVERIFY(writeEverything(project, &item));
        QCOMPARE(textOnDisk(project, type), u" "_s);
    }
}

void TstWriteDocuments::aFileOfAnEmptyDocumentThatCannotBeRemovedIsReported_data()
{
    addWrittenTypeRows();
}

void TstWriteDocuments::aFileOfAnEmptyDocumentThatCannotBeRemovedIsReported()
{
    QFETCH(int, type);
    QFETCH(QString, message);

    const TestProject project;
    const QString filePath = docsPath(TVL::DocumentType(type));
    project.writeFile(filePath + u"/file"_s, "in a folder");
    const auto before = project.files();
    LoadedItem item;
    item.document(TVL::DocumentType(type))->setSaved(false);
    QStringList errors;
    QVERIFY(!writeEverything(project, &item, &errors));
    const QString reason =
        u"Document contents is empty, but Tavelinor failed removing its file: '%1'"_s.arg(
            project.path(filePath));
    QCOMPARE(errors, QStringList(message.arg(reason)));
    QVERIFY(!item.document(TVL::DocumentType(type))->isSaved());
    QCOMPARE(project.files(), before);
}

void TstWriteDocuments::aFolderThatCannotBeMadeIsReported_data()
{
    QTest::addColumn<QString>("obstacle");

    QTest::newRow("a file in place of Files") << u"Files"_s;
    QTest::newRow("a file in place of Docs") << u"Files/Docs"_s;
}

void TstWriteDocuments::aFolderThatCannotBeMadeIsReported()
{
    QFETCH(QString, obstacle);

    const TestProject project;
    project.writeFile(obstacle, "obstacle");
    for (const TVL::DocumentType type : AllTypes) {
        LoadedItem item;
        item.edit(type, u"Once"_s);
        QString error;
        QVERIFY(!Format::writeDocument(project.path(), item.node(), item.document(type), &error));
        QCOMPARE(error, u"Could not create directory: '%1'"_s.arg(project.path(u"Files/Docs"_s)));
    }
    // In particular nothing was put where the way ended.
    QCOMPARE(project.files().keys(), QStringList(obstacle));
}

void TstWriteDocuments::aFileThatCannotBeOpenedIsReported_data()
{
    addWrittenTypeRows();
}

void TstWriteDocuments::aFileThatCannotBeOpenedIsReported()
{
    QFETCH(int, type);

    const TestProject project;
    const UnopenableFile unopenable;
    unopenable.linkTo(project, docsPath(TVL::DocumentType(type)));
    LoadedItem item;
    item.edit(TVL::DocumentType(type), u"Once"_s);
    QString error;
    QVERIFY(!Format::writeDocument(project.path(), item.node(),
                                   item.document(TVL::DocumentType(type)), &error));
    QCOMPARE(error, unwritableText(project, docsPath(TVL::DocumentType(type))));
}

void TstWriteDocuments::aFileThatIsALinkIsNotWritten_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("size");

    for (const TVL::DocumentType type : AllTypes) {
        QTest::addRow("small, type %d", int(type)) << int(type) << 10;
        QTest::addRow("large, type %d", int(type)) << int(type) << 1'000'000;
    }
}

void TstWriteDocuments::aFileThatIsALinkIsNotWritten()
{
    QFETCH(int, type);
    QFETCH(int, size);

    const TestProject project;
    makeUnwritable(project, docsPath(TVL::DocumentType(type)));
    LoadedItem item;
    item.edit(TVL::DocumentType(type), QString(size, u'x'));
    QString error;
    QVERIFY(!Format::writeDocument(project.path(), item.node(),
                                   item.document(TVL::DocumentType(type)), &error));
    QCOMPARE(error, unwritableText(project, docsPath(TVL::DocumentType(type))));
}

void TstWriteDocuments::savedDocumentsAreNotTouched()
{
    const TestProject project;
    LoadedItem item;
    editAll(&item, u"Once"_s);
    QVERIFY(writeEverything(project, &item));
    QMap<QString, QDateTime> times;
    const QStringList names = project.files().keys();
    for (const QString &name : names) {
        setAge(project.path(name), 60);
        times.insert(name, QFileInfo(project.path(name)).lastModified());
    }
    const auto before = project.files();

    QStringList errors = {u"untouched"_s};
    QVERIFY(writeEverything(project, &item, &errors));
    QCOMPARE(errors, QStringList(u"untouched"_s));
    QCOMPARE(project.files(), before);
    for (const QString &name : names)
        QCOMPARE(QFileInfo(project.path(name)).lastModified(), times.value(name));

    const TestProject nowhere;
    QVERIFY(writeEverything(nowhere, &item));
    QVERIFY(!QFileInfo::exists(nowhere.path()));
}

void TstWriteDocuments::onlyUnsavedDocumentsAreWritten_data()
{
    addWrittenTypeRows();
}

void TstWriteDocuments::onlyUnsavedDocumentsAreWritten()
{
    QFETCH(int, type);

    const TestProject project;
    LoadedItem item;
    editAll(&item, u"Once"_s);
    for (const TVL::DocumentType each : AllTypes)
        item.document(each)->setSaved(each != type);
    QVERIFY(writeEverything(project, &item));
    for (const TVL::DocumentType each : AllTypes)
        QCOMPARE(exists(project, each), each == type);
    QCOMPARE(exists(project, TVL::CommentsFile), type == TVL::MainText);
}

void TstWriteDocuments::documentsThatAreNotLoadedAreLeftOut()
{
    const TestProject project;
    LoadedItem item;
    editAll(&item, u"Once"_s);
    item.node()->mTextDocument = nullptr;
    item.node()->mSynopsisDocument = nullptr;
    QVERIFY(writeEverything(project, &item));
    QCOMPARE(project.files().keys(), QStringList(docsPath(TVL::NotesText)));
    item.node()->mNotesDocument = nullptr;
    QVERIFY(writeEverything(project, &item));
}

void TstWriteDocuments::writingMarksDocumentsAsSaved()
{
    const TestProject project;
    LoadedItem item;
    editAll(&item, u"Once"_s);
    QVERIFY(writeEverything(project, &item));
    for (const TVL::DocumentType type : AllTypes) {
        QVERIFY(item.document(type)->isSaved());
        QCOMPARE(textOnDisk(project, type), u"Once"_s);
    }
    QCOMPARE(commentsOnDisk(project), QList<TVLTextCommentLink>{numberedComment(1)});
}

void TstWriteDocuments::anUnreadableDocumentIsNeverWritten_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("main text") << int(TVL::MainText) << QByteArray("{\\rtf1 {cut");
    QTest::newRow("notes") << int(TVL::NotesText) << QByteArray("{\\rtf1 {cut");
}

void TstWriteDocuments::anUnreadableDocumentIsNeverWritten()
{
    QFETCH(int, type);
    QFETCH(QByteArray, content);

    const TestProject project;
    project.writeFile(docsPath(TVL::DocumentType(type)), content);
    LoadedItem item;
    const Format format(project.path(), TVL::FormatVersion18);
    QVERIFY(!format.readDocuments(item.node(), nullptr, nullptr));
    // Not even when it was edited, or emptied, and others of the item are written.
    for (const QString &text : {u"Edited"_s, QString()}) {
        editAll(&item, text);
        QVERIFY(writeEverything(project, &item));
        QCOMPARE(project.readFile(docsPath(TVL::DocumentType(type))), content);
        QVERIFY(!item.document(TVL::DocumentType(type))->isSaved());
        QVERIFY(item.synopsis()->isSaved());
    }
    QCOMPARE(exists(project, TVL::CommentsFile), false);
}

void TstWriteDocuments::aFolderInTheTextsPlaceIsLeftAlone()
{
    const TestProject project;
    project.writeFile(docsPath(TVL::MainText) + u"/file"_s, "in a folder");
    const auto before = project.files();
    LoadedItem item;
    const Format format(project.path(), TVL::FormatVersion18);
    QStringList errors;
    QVERIFY(!format.readDocuments(item.node(), nullptr, &errors));
    QCOMPARE(errors,
             QStringList(u"Error: Trying to read directory as a file: '%1'"_s.arg(
                 project.path(docsPath(TVL::MainText)))));
    item.edit(TVL::MainText, u"Edited"_s);
    QVERIFY(writeEverything(project, &item));
    QCOMPARE(project.files(), before);
}

void TstWriteDocuments::aClearedTextLosesItsFile()
{
    const TestProject project;
    LoadedItem item;
    editAll(&item, u"Once"_s);
    QVERIFY(writeEverything(project, &item));
    QCOMPARE(project.files().size(), 4);
    for (const TVL::DocumentType type : AllTypes) {
        item.document(type)->clear();
        item.document(type)->setSaved(false);
    }
    QVERIFY(writeEverything(project, &item));
    QVERIFY(project.files().isEmpty());

    LoadedItem again;
    const Format format(project.path(), TVL::FormatVersion18);
    QVERIFY(format.readDocuments(again.node(), nullptr, nullptr));
    for (const TVL::DocumentType type : AllTypes)
        QVERIFY(again.document(type)->isEmpty());
}

void TstWriteDocuments::removedCommentsLoseTheirFile()
{
    const TestProject project;
    LoadedItem item;
    editAll(&item, u"Once"_s);
    QVERIFY(writeEverything(project, &item));
    QVERIFY(exists(project, TVL::CommentsFile));
    QTextCursor cursor(item.text());
    cursor.select(QTextCursor::Document);
    TVLTextDoc::removeComment(cursor);
    QVERIFY(writeEverything(project, &item));
    QVERIFY(exists(project, TVL::CommentsFile)); // The text wasn't unsaved.
    item.text()->setSaved(false);
    QVERIFY(writeEverything(project, &item));
    QVERIFY(!exists(project, TVL::CommentsFile));
    QCOMPARE(textOnDisk(project, TVL::MainText), u"Once"_s);
}

void TstWriteDocuments::commentsAreWrittenWithTheMainTextAlone()
{
    const TestProject project;
    project.writeFile(docsPath(TVL::CommentsFile), "<Comments/>");
    LoadedItem item;
    item.edit(TVL::NotesText, u"Once"_s);
    TVLTextDoc::setComment(item.notes(), {0, 1}, numberedComment(1));
    QVERIFY(writeEverything(project, &item));
    QCOMPARE(project.readFile(docsPath(TVL::CommentsFile)), QByteArray("<Comments/>"));
}

void TstWriteDocuments::aFailureIsReportedAndLeavesTheDocumentUnsaved_data()
{
    addWrittenTypeRows();
}

void TstWriteDocuments::aFailureIsReportedAndLeavesTheDocumentUnsaved()
{
    QFETCH(int, type);
    QFETCH(QString, message);

    const TestProject project;
    makeUnwritable(project, docsPath(TVL::DocumentType(type)));
    LoadedItem item;
    editAll(&item, u"Once"_s);
    QStringList errors;
    QVERIFY(!writeEverything(project, &item, &errors));
    QCOMPARE(errors,
             QStringList(message.arg(unwritableText(project, docsPath(TVL::DocumentType(type))))));
    for (const TVL::DocumentType each : AllTypes) {
        QCOMPARE(item.document(each)->isSaved(), each != type);
        if (each != type)
            QCOMPARE(textOnDisk(project, each), u"Once"_s);
    }
}

void TstWriteDocuments::aFailedTextDoesNotStopTheOthers()
{
    const TestProject project;
    const UnopenableFile unopenable;
    unopenable.linkTo(project, docsPath(TVL::MainText));
    LoadedItem item;
    editAll(&item, u"Once"_s);
    QVERIFY(!writeEverything(project, &item));
    QVERIFY(!item.text()->isSaved());
    QVERIFY(item.notes()->isSaved());
    QVERIFY(item.synopsis()->isSaved());
    QCOMPARE(textOnDisk(project, TVL::NotesText), u"Once"_s);
    QCOMPARE(textOnDisk(project, TVL::SynopsisText), u"Once"_s);
}

void TstWriteDocuments::allFailuresAreInTheList()
{
    const TestProject project;
    const UnopenableFile unopenable;
    for (const TVL::DocumentType type : AllTypes)
        unopenable.linkTo(project, docsPath(type));
    LoadedItem item;
    editAll(&item, u"Once"_s);
    QStringList errors;
    QVERIFY(!writeEverything(project, &item, &errors));
    const auto reason = [&project](TVL::DocumentType type) {
        return unwritableText(project, docsPath(type));
    };
    QCOMPARE(errors,
             (QStringList{u"Failed saving text for document with id: 12 \nError: '%1'"_s.arg(
                              reason(TVL::MainText)),
                          u"Failed saving document notes with id: 12 \nError: '%1'"_s.arg(
                              reason(TVL::NotesText)),
                          u"Failed saving document synopsis with id: 12 \nError: '%1'"_s.arg(
                              reason(TVL::SynopsisText))}));
    for (const TVL::DocumentType type : AllTypes)
        QVERIFY(!item.document(type)->isSaved());
}

void TstWriteDocuments::commentsOfAFailedTextAreNotWritten()
{
    const TestProject project;
    const UnopenableFile unopenable;
    unopenable.linkTo(project, docsPath(TVL::MainText));
    LoadedItem item;
    editAll(&item, u"Once"_s);
    QVERIFY(!writeEverything(project, &item));
    QVERIFY(!exists(project, TVL::CommentsFile));
}

void TstWriteDocuments::anUnreadableCommentsFileIsNeverWritten_data()
{
    QTest::addColumn<bool>("addsComment");
    QTest::newRow("after a change of the text") << false;
    QTest::newRow("after a new comment") << true;
}

void TstWriteDocuments::anUnreadableCommentsFileIsNeverWritten()
{
    QFETCH(const bool, addsComment);
    const TestProject project;
    const QByteArray damaged = "<Comments Version=\"1.0\"><Comment ID=\"a\" Collapsed=\"No\">";
    project.writeFile(docsPath(TVL::MainText),
                      rtfOf("{\\field{\\*\\fldinst HYPERLINK \"tavelcmt://a\"}{\\fldrslt Text}}"));
    project.writeFile(docsPath(TVL::CommentsFile), damaged);
    LoadedItem item;
    const Format format(project.path(), TVL::FormatVersion18);
    QVERIFY(!format.readDocuments(item.node(), nullptr, nullptr));
    QVERIFY(item.text()->areCommentsReadOnly());
    QVERIFY(!item.text()->isReadOnly());

    QTextCursor(item.text()).insertText(u"More "_s);
    item.text()->setSaved(false);
    if (addsComment)
        TVLTextDoc::setComment(item.text(), {0, 4}, numberedComment(1));
    QStringList errors;
    QCOMPARE(format.writeDocuments(item.node(), &errors), !addsComment);
    QCOMPARE(
        errors,
        addsComment ? QStringList(
            u"Failed saving inspector notes for id: 12 \nError: 'Could not load comments file: '%1''"_s
                .arg(project.path(docsPath(TVL::CommentsFile))))
                    : QStringList());
    QCOMPARE(textOnDisk(project, TVL::MainText), u"More Text"_s);
    QCOMPARE(project.readFile(docsPath(TVL::CommentsFile)), damaged);
}

void TstWriteDocuments::failedCommentsAreReportedAndWrittenAgainLater_data()
{
    QTest::addColumn<bool>("isFolder");

    QTest::newRow("a folder") << true;
    QTest::newRow("a link") << false;
}

void TstWriteDocuments::failedCommentsAreReportedAndWrittenAgainLater()
{
    QFETCH(bool, isFolder);

    const TestProject project;
    const QString comments = docsPath(TVL::CommentsFile);
    if (isFolder)
        QVERIFY(QDir().mkpath(project.path(comments)));
    else
        makeUnwritable(project, comments);
    LoadedItem item;
    editAll(&item, u"Once"_s);
    QStringList errors;
    QVERIFY(!writeEverything(project, &item, &errors));
    const QString start = u"Failed saving inspector notes for id: 12 \nError: '"_s;
    QCOMPARE(errors.size(), 1);
    QVERIFY(errors.constFirst().startsWith(isFolder ? start
                                                    : start + unwritableText(project, comments)));
    QVERIFY(errors.constFirst().endsWith(u" - ("_s + project.path(comments) + u")'"_s));
    QCOMPARE(textOnDisk(project, TVL::MainText), u"Once"_s);
    QVERIFY(item.notes()->isSaved());

    QVERIFY(isFolder ? QDir().rmdir(project.path(comments))
                     : QFile::remove(project.path(comments)));
    QVERIFY(writeEverything(project, &item, &errors));
    QCOMPARE(commentsOnDisk(project), QList<TVLTextCommentLink>{numberedComment(1)});
    QVERIFY(item.text()->isSaved());
    QVERIFY(errors.isEmpty());
}

void TstWriteDocuments::aLaterSaveTriesAgain()
{
    const TestProject project;
    for (const TVL::DocumentType type : AllTypes)
        makeUnwritable(project, docsPath(type));
    LoadedItem item;
    editAll(&item, u"Once"_s);
    QVERIFY(!writeEverything(project, &item));
    for (const TVL::DocumentType type : AllTypes)
        QVERIFY(QFile::remove(project.path(docsPath(type))));
    QVERIFY(writeEverything(project, &item));
    for (const TVL::DocumentType type : AllTypes) {
        QVERIFY(item.document(type)->isSaved());
        QCOMPARE(textOnDisk(project, type), u"Once"_s);
    }
    QCOMPARE(commentsOnDisk(project), QList<TVLTextCommentLink>{numberedComment(1)});
}

void TstWriteDocuments::errorsAreReplaced()
{
    const TestProject project;
    LoadedItem item;
    item.edit(TVL::NotesText, u"Once"_s);
    QStringList errors = {u"before"_s};
    QVERIFY(writeEverything(project, &item, &errors));
    QVERIFY(errors.isEmpty());
}

void TstWriteDocuments::errorsNeedNotBeAskedFor()
{
    const TestProject project;
    for (const TVL::DocumentType type : AllTypes)
        project.writeFile(docsPath(type) + u"/file"_s, {});
    LoadedItem item;
    editAll(&item, u"Once"_s);
    QVERIFY(!writeEverything(project, &item));
    for (const TVL::DocumentType type : AllTypes) {
        QVERIFY(!Format::writeDocument(project.path(), item.node(), item.document(type), nullptr));
        item.document(type)->clear();
        QVERIFY(!Format::writeDocument(project.path(), item.node(), item.document(type), nullptr));
    }
}

TVL_TEST(TstWriteDocuments)
#include "tst_writedocuments.moc"
