#include "Callable.h"
#include "TestMain.h"

#include "TCoreType.h"
#include "TUuid.h"
#include "TVLBinderReader.h"
#include "TVLBinderWriter.h"
#include "TVLKeywordModel.h"
#include "TVLProjectModel.h"

#include <QBuffer>
#include <QPrinter>

using namespace Qt::StringLiterals;

/** What a program can call of the binder's reader and writer. */
class TstBinderInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writingTheDocument();
    void writingItems();
    void writingLists();
    void writingSettings();
    void writingFilesBesideTheBinder();
    void readingTheDocument();
    void readingItems();
    void readingSections();
    void readingFilesBesideTheBinder();
    void raisingErrors();
    void valuesAsText();
    void versions();

    void userDataIsSkippedWhateverTheText();
    void collectionsAreReadIntoAReference();
};

void TstBinderInterface::writingTheDocument()
{
    areCallable([](QIODevice *device, TVLProjectModel *model, TVLProjectNode *root) {
        TVLBinderWriter unset;
        TVLBinderWriter writer(device);
        QXmlStreamWriter &base = unset;
        gives<bool>(base.autoFormatting());
        writer.writeProject(model, root);
        writer.writeStartTavelinorProjectTag(model, true);
        writer.writeEndTavelinorProjectTag();
    });
}

void TstBinderInterface::writingItems()
{
    areCallable([](TVLBinderWriter &writer, TVLProjectNode *node) {
        writer.writeNodeList(node, false);
        writer.writeNode(node, false);
        writer.writeCorkboardAndOutliner(node);
        writer.writeKeywords(node);
        writer.writeReferences(QList<TVLReference>());
        writer.writeCustomMetaData(QMap<QString, QString>());
    });
}

void TstBinderInterface::writingLists()
{
    areCallable([](TVLBinderWriter &writer, TVLProjectModel *model, TVLKeywordModel *keywords) {
        writer.writeLabels(u"Label"_s, 1, QList<TVLLabel>());
        writer.writeStatusItems(u"Status"_s, 1, QList<TVLStatusItem>());
        writer.writeTemplateFolderId(model);
        writer.writeCollections(QList<TVLCollectionMetaData>());
        writer.writeKeywords(keywords);
        writer.writeFavorites(model);
        writer.writeAutoCompleteList(QList<TVLAutoCompleteItem>());
        writer.writeProjectReferences(QList<TVLReference>());
    });
}

void TstBinderInterface::writingSettings()
{
    areCallable([](TVLBinderWriter &writer, TVLProjectModel *model, QPrinter *printer) {
        writer.writeCustomMetaDataSettings(TVLCustomMetaDataSettings());
        writer.writeProjectProperties(model);
        writer.writeProjectTargets(TVLDraftTarget(), TVLSessionTarget(), true);
        writer.writeBackupSettings(true);
        writer.writeFullScreenBackdrop(QVariant(1));
        writer.writePrintSettings(printer);
        writer.writeUserProjectData(u"<UserProjectData/>"_s);
    });
}

void TstBinderInterface::writingFilesBesideTheBinder()
{
    areCallable([](TVLBinderWriter &writer) {
        writer.writeComments(QList<TVLTextCommentLink>(), true);
        writer.writeSnapshots(QList<TVLSnapshotInfo>());
        writer.writeProjectNotes(QList<QPair<int, QTextDocument *>>());
    });
}

void TstBinderInterface::readingTheDocument()
{
    areCallable([](QIODevice *device, TVLProjectModel *model, TVLProjectNode *root) {
        TVLBinderReader unset;
        TVLBinderReader reader(device);
        QXmlStreamReader &base = unset;
        gives<bool>(base.hasError());
        gives<bool>(reader.readProject(model, root));
        gives<bool>(reader.readStartDocument(model));
        gives<TVLProjectInfo>(reader.readProjectInfo());
        gives<TVLProjectInfo>(TVLBinderReader::readProjectInfo(u"a"_s));
    });
}

void TstBinderInterface::readingItems()
{
    areCallable([](TVLBinderReader &reader, TVLProjectNode *node) {
        gives<bool>(reader.readNodeList(node));
        gives<bool>(reader.readNode(node));
        gives<QMap<QString, QString>>(reader.readCustomMetaData());
        gives<bool>(reader.readKeywords(node));
        gives<bool>(reader.readReferences(node));
        gives<bool>(reader.readCorkboardAndOutliner(node));
        gives<bool>(reader.readCorkboardSettings(node));
    });
}

void TstBinderInterface::readingSections()
{
    areCallable([](TVLBinderReader &reader, QList<TVLCollectionMetaData> &collections,
                   QList<TVLReference> &references) {
        gives<bool>(reader.readCollections(&collections));
        gives<bool>(reader.readCollections(collections));
        gives<bool>(reader.readProjectReferences(&references));
        reader.readUserProjectData(QString());
    });
}

void TstBinderInterface::readingFilesBesideTheBinder()
{
    areCallable([](TVLBinderReader &reader, QList<TVLTextCommentLink> &comments,
                   TVLTextInternalLinkMap &links, QList<TVLSnapshotInfo> &snapshots,
                   QList<QPair<int, TVLTextInternalLinkMap>> &notes) {
        gives<bool>(reader.readComments(&comments));
        gives<bool>(reader.readLinks(&links, &links, &comments));
        gives<bool>(reader.readSnapshots(&snapshots));
        gives<bool>(reader.readProjectNotes(&notes));
    });
}

void TstBinderInterface::raisingErrors()
{
    areCallable([](TVLBinderReader &reader) {
        reader.raiseError(u"a"_s, __LINE__);
        reader.raiseIncorrectTagError(u"a"_s, u"b"_s, __LINE__);
    });
}

void TstBinderInterface::valuesAsText()
{
    areCallable([](bool *ok) {
        gives<QString>(tvlDateTimeToString(QDateTime(), false));
        gives<QDateTime>(tvlStringToDateTime(QString(), false));
        gives<QString>(tvlPointFToString(QPointF()));
        gives<QPointF>(tvlStringToPointF(QString(), ok));
        gives<QString>(TUuid::toStringNoBraces(QUuid(), true));
        gives<QString>(TCoreType::toString(QPointF(), 6));
        gives<QPointF>(TCoreType::toPointF(QString(), ok));
        gives<QString>(TCoreType::toString(QSet<int>()));
        gives<QSet<int>>(TCoreType::splitToIds(QString()));
        gives<QString>(TVL::colorToFloatString(QColor()));
    });
}

void TstBinderInterface::versions()
{
    areCallable([](TVL::BinderVersion version) {
        gives<TVL::BinderVersion>(TVL::toBinderVersion(u"1.5"_s));
        gives<QString>(TVL::toString(version));
        gives<bool>(TVL::isValidFormatVersion(18));
    });
}

void TstBinderInterface::userDataIsSkippedWhateverTheText()
{
    TVLBinderReader reader;
    reader.addData("<A><UserProjectData><x:B>&c;</x:B></UserProjectData><D/></A>");
    QVERIFY(reader.readNextStartElement() && reader.readNextStartElement());
    QCOMPARE(reader.name(), u"UserProjectData");
    QVERIFY(reader.readUserProjectData(u"anything"_s));
    QVERIFY(reader.readNextStartElement());
    QCOMPARE(reader.name(), u"D");
}

void TstBinderInterface::collectionsAreReadIntoAReference()
{
    TVLBinderReader reader;
    reader.addData("<Collections><Collection ID='a'/></Collections>");
    QVERIFY(reader.readNextStartElement());
    QList<TVLCollectionMetaData> collections;
    QVERIFY(reader.readCollections(collections));
    QCOMPARE(collections.size(), 1);
    QCOMPARE(collections.first().mId, u"a"_s);
}

TVL_TEST(TstBinderInterface)
#include "tst_binderinterface.moc"
