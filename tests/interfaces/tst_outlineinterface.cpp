#include "Callable.h"
#include "TestMain.h"

#include "TVLBrumbleOpmlParser.h"
#include "TVLDomDoc.h"
#include "TVLOpmlReader.h"

#include <QtXml/QDomElement>

/** What a program can call of outlines, mind maps and note-boards. */
class TstOutlineInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void documents();
    void outlines();
    void noteBoards();
};

void TstOutlineInterface::documents()
{
    areCallable([](QIODevice *device, QString *text) {
        TVLDomDoc doc;
        gives<bool>(doc.setContent(device));
        gives<bool>(doc.setContent(*text));
        gives<QString>(doc.errorString());
        gives<int>(doc.errorLine());
        gives<int>(doc.errorColumn());
        gives<bool>(doc.cd(*text));
        gives<bool>(doc.cdNext(*text));
        bool found = false;
        gives<bool>(doc.find(*text));
        doc.getAttr(text);
        doc.getAttr(text, *text, &found);
        gives<bool>(doc.get(text));
        gives<QDomElement>(doc.currentElement());
        gives<QDomElement>(doc.currentChild());
        doc.setWorkElement(doc.currentChild());
    });
}

void TstOutlineInterface::outlines()
{
    areCallable(
        [](TVLProjectModel *model, const QModelIndex &parent, QIODevice *device, QString *text) {
            const TVL::OpmlImportType types[] = {TVL::OpmlTitlesOnly, TVL::OpmlNoteAsSynopsis,
                                                 TVL::OpmlNoteAsText, TVL::OpmlNoteAsNotes};
            TVLOpmlReader reader(model);
            gives<bool>(reader.read(*text, types[0], true, parent, 0));
            gives<bool>(reader.read(*text, parent, 0, text));
            gives<bool>(reader.load(*text));
            gives<bool>(reader.load(device));
            gives<bool>(reader.parseFile(parent, 0));
            reader.clear();
            gives<QString>(reader.errorString());
            gives<TVLOpmlReader::FileKind>(reader.fileKind());
        });
}

void TstOutlineInterface::noteBoards()
{
    areCallable([](TVLProjectModel *model, const QModelIndex &parent, const QString &text) {
        TVLBrumbleOpmlParser parser(model);
        gives<bool>(parser.parse(text, 0, parent));
        gives<QString>(parser.errorString());
    });
}

TVL_TEST(TstOutlineInterface)
#include "tst_outlineinterface.moc"
