#include "StorageFixtures.h"
#include "TVLProjectFolderFormat.h"
#include "TestMain.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;

const QString Path = u"/projects/Novel.tavel"_s;
constexpr int NoDocumentType = -1;

/** Numbers that are no document type, beside the one whose file is found by its extension. */
const QList<int> NamelessTypes = {-1, 5, 6, 9, 10, 1000};

} // namespace

class TstDocumentNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theNamesOfAType_data();
    void theNamesOfAType();
    void aTypeWithoutAFileHasNoNames();
    void aNumberedNameHoldsAnyId();
    void theTypeOfANumberedFile_data();
    void theTypeOfANumberedFile();
    void theTypeOfAFileInAnItemsFolder_data();
    void theTypeOfAFileInAnItemsFolder();
    void whatIsADocumentInAnItemsFolder_data();
    void whatIsADocumentInAnItemsFolder();
    void everyNumberedNameLeadsBackToItsType();
    void everyNameInAnItemsFolderLeadsBackToItsType();

    void thePathsOfAType_data();
    void thePathsOfAType();
    void aTypeWithoutAFileHasNoPath();
    void theUuidOfAFileNameIsInEitherCase();
    void filesAreReadFromTheDesktop();
};

void TstDocumentNames::theNamesOfAType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("docsName");
    QTest::addColumn<QString>("dataName");
    QTest::addColumn<QString>("description");

    QTest::newRow("main text") << int(TVL::MainText) << u"12.rtf"_s << u"content.rtf"_s
                               << u"document"_s;
    QTest::newRow("notes") << int(TVL::NotesText) << u"12_notes.rtf"_s << u"notes.rtf"_s
                           << u"notes"_s;
    QTest::newRow("synopsis") << int(TVL::SynopsisText) << u"12_synopsis.txt"_s << u"synopsis.txt"_s
                              << u"synopsis"_s;
    QTest::newRow("links") << int(TVL::LinksFile) << u"12.links"_s << u"content.links"_s
                           << QString();
    QTest::newRow("comments") << int(TVL::CommentsFile) << u"12.comments"_s << u"content.comments"_s
                              << QString();
    QTest::newRow("styles of the text")
        << int(TVL::TextStyles) << u"12.styles"_s << u"content.styles"_s << QString();
    QTest::newRow("styles of the notes")
        << int(TVL::NotesStyles) << u"12_notes.styles"_s << u"note.styles"_s << QString();
}

void TstDocumentNames::theNamesOfAType()
{
    QFETCH(int, type);
    QFETCH(QString, docsName);
    QFETCH(QString, dataName);
    QFETCH(QString, description);

    const auto documentType = TVL::DocumentType(type);
    QCOMPARE(Format::documentFileNameId(12, documentType), docsName);
    QCOMPARE(Format::docTypeToFileName(documentType), dataName);
    QCOMPARE(Format::docTypeDescr(documentType), description);
}

void TstDocumentNames::aTypeWithoutAFileHasNoNames()
{
    for (const int type : NamelessTypes) {
        const auto documentType = TVL::DocumentType(type);
        QCOMPARE(Format::documentFileNameId(12, documentType), QString());
        QCOMPARE(Format::docTypeToFileName(documentType), QString());
        QCOMPARE(Format::docTypeDescr(documentType), QString());
    }
}

void TstDocumentNames::aNumberedNameHoldsAnyId()
{
    QCOMPARE(Format::documentFileNameId(0, TVL::MainText), u"0.rtf"_s);
    QCOMPARE(Format::documentFileNameId(2147483647, TVL::NotesText), u"2147483647_notes.rtf"_s);
}

void TstDocumentNames::theTypeOfANumberedFile_data()
{
    QTest::addColumn<int>("type");

    const auto add = [](const char *fileName, int type) { QTest::newRow(fileName) << type; };
    add("12.rtf", TVL::MainText);
    add("12.RTF", TVL::MainText);
    add("0.rtf", TVL::MainText);
    add("12.draft.rtf", TVL::MainText);
    add("12_notes.rtf", TVL::NotesText);
    add("_notes.rtf", TVL::NotesText);
    add("abc_notes.rtf", TVL::NotesText);
    add("12_synopsis.txt", TVL::SynopsisText);
    add("12.links", TVL::LinksFile);
    add("abc.links", TVL::LinksFile);
    add("12.comments", TVL::CommentsFile);
    add("12.styles", TVL::ForeignFile);
    add("12.pdf", TVL::ForeignFile);
    add("12.png", TVL::ForeignFile);
    add("12", TVL::ForeignFile);
    add("12.rtf.pdf", TVL::ForeignFile);
    add("12.LINKS", TVL::ForeignFile);
    add("12_notes.styles", NoDocumentType);
    add("12_notes.RTF", NoDocumentType);
    add("12_Synopsis.txt", NoDocumentType);
    add("abc.rtf", NoDocumentType);
    add("-12.rtf", NoDocumentType);
    add("12x.rtf", NoDocumentType);
    add("99999999999.rtf", NoDocumentType);
    add(".rtf", NoDocumentType);
    add("docs.checksum", NoDocumentType);
}

void TstDocumentNames::theTypeOfANumberedFile()
{
    QFETCH(int, type);

    QCOMPARE(Format::findDocumentTypeId(QString::fromLatin1(QTest::currentDataTag())), type);
    QCOMPARE(Format::findDocumentTypeId(QString()), -1);
}

void TstDocumentNames::theTypeOfAFileInAnItemsFolder_data()
{
    QTest::addColumn<int>("type");

    const auto add = [](const char *fileName, int type) { QTest::newRow(fileName) << type; };
    add("content.rtf", TVL::MainText);
    add("notes.rtf", TVL::NotesText);
    add("synopsis.txt", TVL::SynopsisText);
    add("content.links", TVL::LinksFile);
    add("content.comments", TVL::CommentsFile);
    add("content.styles", TVL::TextStyles);
    add("note.styles", TVL::NotesStyles);
    add("content.pdf", TVL::ForeignFile);
    add("content.RTF", TVL::ForeignFile);
    add("content.tar.gz", TVL::ForeignFile);
    add("content", TVL::ForeignFile);
    add("notes.styles", NoDocumentType);
    add("Content.rtf", NoDocumentType);
    add("NOTES.rtf", NoDocumentType);
    add("contents.rtf", NoDocumentType);
    add("12.rtf", NoDocumentType);
    add("docs.checksum", NoDocumentType);
}

void TstDocumentNames::theTypeOfAFileInAnItemsFolder()
{
    QFETCH(int, type);

    QCOMPARE(Format::findDocumentTypeUuid(QString::fromLatin1(QTest::currentDataTag())), type);
    QCOMPARE(Format::findDocumentTypeUuid(QString()), -1);
}

void TstDocumentNames::whatIsADocumentInAnItemsFolder_data()
{
    QTest::addColumn<bool>("isDocument");

    const auto add = [](const char *fileName, bool is) { QTest::newRow(fileName) << is; };
    add("content.rtf", true);
    add("notes.rtf", true);
    add("synopsis.txt", true);
    add("content.pdf", true);
    add("content.tar.gz", true);
    add("content.Styles", true);
    add("content.comments", false);
    add("content.styles", false);
    add("content.links", false);
    add("note.styles", false);
    add("notes.styles", false);
    add("content", false);
    add("Content.rtf", false);
    add("Notes.rtf", false);
    add("synopsis.rtf", false);
    add("my content.rtf", false);
}

void TstDocumentNames::whatIsADocumentInAnItemsFolder()
{
    QFETCH(bool, isDocument);

    QCOMPARE(Format::isNodeDocumentUuid(QString::fromLatin1(QTest::currentDataTag())), isDocument);
    QVERIFY(!Format::isNodeDocumentUuid(QString()));
}

void TstDocumentNames::everyNumberedNameLeadsBackToItsType()
{
    for (const TVL::DocumentType type :
         {TVL::MainText, TVL::NotesText, TVL::SynopsisText, TVL::LinksFile, TVL::CommentsFile}) {
        QCOMPARE(Format::findDocumentTypeId(Format::documentFileNameId(12, type)), int(type));
    }
}

void TstDocumentNames::everyNameInAnItemsFolderLeadsBackToItsType()
{
    for (const TVL::DocumentType type :
         {TVL::MainText, TVL::NotesText, TVL::SynopsisText, TVL::LinksFile, TVL::CommentsFile,
          TVL::TextStyles, TVL::NotesStyles}) {
        QCOMPARE(Format::findDocumentTypeUuid(Format::docTypeToFileName(type)), int(type));
    }
}

void TstDocumentNames::thePathsOfAType_data()
{
    theNamesOfAType_data();
}

void TstDocumentNames::thePathsOfAType()
{
    QFETCH(int, type);
    QFETCH(QString, docsName);
    QFETCH(QString, dataName);

    const auto documentType = TVL::DocumentType(type);
    const QUuid uuid = uuidOf(12);
    const QString folder = u'/' + uuid.toString(QUuid::WithoutBraces).toUpper() + u'/';
    QCOMPARE(Format::filesDocsNodeTypeFilePath(Path, 12, documentType),
             Path + u"/Files/Docs/"_s + docsName);
    QCOMPARE(Format::docsNodeTypeFilePath(Path, 12, documentType),
             Path + u"/Files/Docs/"_s + docsName);
    const QString dataPath = Path + u"/Files/Data"_s + folder + dataName;
    QCOMPARE(Format::filesDataNodeTypeFilePath(Path, uuid, documentType), dataPath);
    QCOMPARE(Format::dataNodeTypeFilePath(Path, uuid, documentType), dataPath);
    QCOMPARE(Format::writeDataNodeTypeFilePath(Path, uuid, documentType), dataPath);
    QCOMPARE(Format::readDataNodeTypeFilePath(Path, uuid, documentType, nullptr), dataPath);
    QCOMPARE(Format::mobileDataNodeTypeFilePath(Path, uuid, documentType),
             Path + u"/Mobile/Data"_s + folder + dataName);
    QCOMPARE(Format::nodeTypeFileName(uuid, documentType, true), folder.mid(1) + dataName);
}

void TstDocumentNames::aTypeWithoutAFileHasNoPath()
{
    // Else the folder would pass for the file.
    for (const int type : NamelessTypes) {
        const auto documentType = TVL::DocumentType(type);
        QCOMPARE(Format::filesDocsNodeTypeFilePath(Path, 12, documentType), QString());
        QCOMPARE(Format::filesDataNodeTypeFilePath(Path, uuidOf(12), documentType), QString());
        QCOMPARE(Format::mobileDataNodeTypeFilePath(Path, uuidOf(12), documentType), QString());
    }
}

void TstDocumentNames::theUuidOfAFileNameIsInEitherCase()
{
    const QUuid uuid(u"abcdefab-cdef-4abc-8def-abcdefabcdef"_s);
    QCOMPARE(Format::nodeTypeFileName(uuid, TVL::NotesText, true),
             u"ABCDEFAB-CDEF-4ABC-8DEF-ABCDEFABCDEF/notes.rtf"_s);
    QCOMPARE(Format::nodeTypeFileName(uuid, TVL::NotesText, false),
             u"abcdefab-cdef-4abc-8def-abcdefabcdef/notes.rtf"_s);
}

void TstDocumentNames::filesAreReadFromTheDesktop()
{
    TVL::Platform platform = TVL::MobilePlatform;
    (void)Format::readDataNodeTypeFilePath(Path, uuidOf(12), TVL::MainText, &platform);
    QCOMPARE(int(platform), 1);
    QCOMPARE(Format::writeDataNodePath(Path, uuidOf(12)),
             Format::filesDataNodePath(Path, uuidOf(12)));
}

TVL_TEST(TstDocumentNames)
#include "tst_documentnames.moc"
