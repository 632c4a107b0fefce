#include "ChangingFunctions.h"
#include "TestMain.h"

#include "TVLTextDocument.h"

#include <QFile>
#include <QImage>
#include <QMap>
#include <QTest>
#include <QTextCursor>

#include <functional>
#include <utility>

using namespace Qt::StringLiterals;

/** A new item is announced when it is whole. */
class TstWholeItems : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatAnAnnouncedItemShowsStays_data();
    void whatAnAnnouncedItemShowsStays();
    void whatIsTypedIntoAnAnnouncedItemIsSaved_data();
    void whatIsTypedIntoAnAnnouncedItemIsSaved();
    void anAnnouncedTextIsCounted();
    void anAnnouncedPictureHasItsCard();
    void anAnnouncedCopyHasEverything();
    void anAnnouncedCopyOfAnotherProjectHasItsWordsForThings();
    void childrenOfACopyFollowWithTheirOwnSignals();
    void textsOfANewItemAreNoEdits();
    void aCopyThatIsRefusedIsAnnouncedAsItStays();
};

namespace {

/** What views show of an item. */
QStringList shown(const TVLProjectModel *model, const QModelIndex &index)
{
    QStringList values;
    const auto add = [&](const QVariant &value) { values.append(value.toString()); };
    add(model->documentPlainText(index, false));
    add(model->synopsis(index));
    add(model->documentNoteAsPlainText(index));
    add(model->wordCount(index, true, true));
    add(model->characterCount(index));
    add(model->sessionWordCount(index, true, true));
    add(model->hasText(index));
    add(model->hasSynopsis(index));
    add(model->hasDocumentNote(index));
    add(model->hasSnapshots(index));
    for (const int role : {int(Qt::DisplayRole), int(Qt::EditRole), int(Qt::ToolTipRole),
                           int(TVLProjectModel::NodeIdRole), int(TVLProjectModel::NodeTypeRole),
                           int(TVLProjectModel::LabelIdRole), int(TVLProjectModel::StatusIdRole),
                           int(TVLProjectModel::FavoriteRole)})
        add(model->data(index, role));
    values.append(model->keywords(index).join(u','));
    for (const TVLReference &reference : model->references(index))
        values.append(reference.mTitle);
    values.append(QStringList(model->customMetaData(index).values()).join(u','));
    add(model->textMode(index));
    add(model->extension(index));
    add(model->showIndexCardImage(index));
    const QSize card = model->indexCardPixmap(index).size();
    values.append(u"%1x%2"_s.arg(card.width()).arg(card.height()));
    add(model->projectNode(index)->mIconFileName);
    add(model->icon(index).isNull());
    return values;
}

/** Calls back for each item when it is announced. */
void onEachNewItem(TVLProjectModel *model, QObject *context,
                   const std::function<void(const QModelIndex &)> &call)
{
    QObject::connect(model, &QAbstractItemModel::rowsInserted, context,
                     [model, call](const QModelIndex &parent, int first, int last) {
                         for (int row = first; row <= last; ++row)
                             call(model->index(row, 0, parent));
                     });
}

void addRowsOfInsertions()
{
    QTest::addColumn<int>("function");
    const QList<ChangingFunction> &functions = insertingFunctions();
    for (qsizetype i = 0; i < functions.size(); ++i)
        QTest::newRow(functions.at(i).name) << int(i);
}

/** Runs the row's function, which finds something to insert in @p project. */
void runRow(const ChangingProject &project, const std::function<void(const QModelIndex &)> &call)
{
    QFETCH(const int, function);
    const ChangingFunction &tried = insertingFunctions().at(function);
    if (tried.prepare)
        tried.prepare(project);
    QObject context;
    onEachNewItem(project.model(), &context, call);
    tried.run(project);
}

} // namespace

void TstWholeItems::whatAnAnnouncedItemShowsStays_data()
{
    addRowsOfInsertions();
}

void TstWholeItems::whatAnAnnouncedItemShowsStays()
{
    const ChangingProject project;
    TVLProjectModel *model = project.model();
    QList<std::pair<QPersistentModelIndex, QStringList>> announced;
    runRow(project, [&](const QModelIndex &index) {
        announced.append({index, shown(model, index)});
    });
    for (const auto &[index, values] : std::as_const(announced))
        QCOMPARE(shown(model, index), values);
}

void TstWholeItems::whatIsTypedIntoAnAnnouncedItemIsSaved_data()
{
    addRowsOfInsertions();
}

void TstWholeItems::whatIsTypedIntoAnAnnouncedItemIsSaved()
{
    const ChangingProject project;
    TVLProjectModel *model = project.model();
    QList<std::pair<QPersistentModelIndex, QPointer<TVLTextDocument>>> edited;
    runRow(project, [&](const QModelIndex &index) {
        if (!model->canHaveText(index))
            return;
        const QPointer<TVLTextDocument> document = model->referenceText(index);
        QTextCursor(document).insertText(u"typed "_s);
        edited.append({index, document});
    });
    QVERIFY(model->save(true));
    for (const auto &[index, document] : std::as_const(edited)) {
        QVERIFY(document && document->node() == model->projectNode(index));
        QVERIFY(document->toPlainText().startsWith(u"typed "));
        QFile file(model->path().filePath(u"Files/Docs/%1.rtf"_s.arg(model->nodeIdentity(index))));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.readAll().contains("typed "));
    }
}

void TstWholeItems::anAnnouncedTextIsCounted()
{
    const TestProject project;
    const auto model = project.create();
    int words = -1;
    QString card;
    onEachNewItem(model.get(), this, [&](const QModelIndex &index) {
        words = model->wordCount(index, false, false);
        card = model->synopsis(index);
    });
    const QModelIndex index = model->insertTextNode(0, model->draftFolder(), u"One"_s,
                                                    u"three little words"_s, u"card"_s, {});
    QCOMPARE(words, 3);
    QCOMPARE(card, u"card"_s);
    QCOMPARE(model->wordCount(index, false, false), 3);
    QCOMPARE(model->sessionWordCount(index, false, false), 3);
    QVERIFY(model->isModified());
}

void TstWholeItems::anAnnouncedPictureHasItsCard()
{
    const TestProject project;
    const auto model = project.create();
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(Qt::red);
    QSize announced;
    onEachNewItem(model.get(), this, [&](const QModelIndex &index) {
        announced = model->indexCardPixmap(index).size();
    });
    const QModelIndex index =
        model->insertImageNode(0, model->researchFolder(), u"Sail"_s, image, {}, {});
    QCOMPARE(announced, QSize(3, 2));
    QCOMPARE(model->indexCardPixmap(index).size(), QSize(3, 2));
}

void TstWholeItems::anAnnouncedCopyHasEverything()
{
    const ChangingProject project;
    TVLProjectModel *model = project.model();
    const QPersistentModelIndex source = project.at(u"f"_s);
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(Qt::red);
    QVERIFY(model->setIndexCardImage(source, image));
    typeText(model, source, u"unsaved "_s);
    QList<QStringList> announced;
    onEachNewItem(model, this,
                  [&](const QModelIndex &index) { announced.append(shown(model, index)); });
    const QModelIndex copy =
        model->insertRowAndClone(0, model->draftFolder(), source, TVLProjectModel::CloneSnapshots);
    QCOMPARE(announced.size(), 1);
    QCOMPARE(announced.constFirst(), shown(model, copy));
    QCOMPARE(model->documentPlainText(copy, false), u"unsaved f text"_s);
    QCOMPARE(model->wordCount(copy, false, false), 3);
    QCOMPARE(model->indexCardPixmap(copy).size(), QSize(3, 2));
    QCOMPARE(model->keywords(copy), model->keywords(source));
    QVERIFY(model->hasSnapshots(copy));
}

void TstWholeItems::anAnnouncedCopyOfAnotherProjectHasItsWordsForThings()
{
    const ChangingProject project;
    TVLProjectModel *model = project.model();
    QStringList announced;
    onEachNewItem(model, this, [&](const QModelIndex &index) {
        announced.append(model->title(index) + u": "_s + model->label(index).mTitle + u", "_s
                         + model->statusItem(index).mTitle + u", "_s
                         + model->keywords(index).join(u' '));
    });
    QVERIFY(model
                ->insertRowAndClone(0, model->researchFolder(), project.foreign(u"x"_s),
                                    TVLProjectModel::CloneChildren)
                .isValid());
    QCOMPARE(announced,
             QStringList({u"x: x label, x status, x keyword shared"_s,
                          u"y: y label, y status, y keyword shared"_s,
                          u"z: z label, z status, z keyword shared"_s}));
}

void TstWholeItems::childrenOfACopyFollowWithTheirOwnSignals()
{
    const ChangingProject project;
    TVLProjectModel *model = project.model();
    QStringList announced;
    onEachNewItem(model, this, [&](const QModelIndex &index) {
        announced.append(model->title(index) + u" in "_s + model->title(index.parent()) + u" of "_s
                         + QString::number(model->rowCount(index)));
    });
    QCOMPARE(model->duplicate({project.at(u"a"_s)}, true).size(), 1);
    QCOMPARE(announced,
             QStringList({u"a-1 in Draft of 0"_s, u"b in a-1 of 0"_s, u"c in b of 0"_s,
                          u"d in a-1 of 0"_s}));
    QCOMPARE(treeText(model, model->draftFolder()), u" a(b(c) d) a-1(b(c) d) e"_s);
}

void TstWholeItems::textsOfANewItemAreNoEdits()
{
    const TestProject project;
    const auto model = project.create();
    const SignalLog log(model.get());
    const QModelIndex index = addTextItem(model.get(), model->draftFolder(), u"a"_s);
    QCOMPARE(log.lines(),
             QStringList({u"rows 1-1 below 0 to come"_s, u"rows 1-1 below 0"_s, u"modified"_s}));
    // They are unsaved all the same.
    QVERIFY(model->save());
    QVERIFY(project.readFile(u"Files/Docs/%1.rtf"_s.arg(model->nodeIdentity(index)))
                .contains("a text"));
}

void TstWholeItems::aCopyThatIsRefusedIsAnnouncedAsItStays()
{
    const ChangingProject project;
    TVLProjectModel *model = project.model();
    QStringList announced;
    onEachNewItem(model, this, [&](const QModelIndex &index) { announced = shown(model, index); });
    const QModelIndex item =
        model->insertRowAndClone(0, model->draftFolder(), project.at(u"p"_s), {});
    QVERIFY(item.isValid());
    QCOMPARE(model->title(item), QString());
    QCOMPARE(announced, shown(model, item));
}

TVL_TEST(TstWholeItems)
#include "tst_wholeitems.moc"
