#include "TestMain.h"

#include "TVLUnattendedMessageBoxes.h"

#include <QDialog>
#include <QErrorMessage>
#include <QProgressDialog>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

using Box = TVLUnattendedMessageBoxes::Box;
using Button = QMessageBox::StandardButton;
using Buttons = QMessageBox::StandardButtons;

QStringList textsOf(const QList<Box> &boxes)
{
    QStringList texts;
    for (const Box &box : boxes)
        texts += box.text;
    return texts;
}

} // namespace

Q_DECLARE_METATYPE(Button)
Q_DECLARE_METATYPE(Buttons)

class TstUnattended : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void aBoxIsRecorded();
    void aBoxIsAnnouncedBeforeItCloses();
    void takingTheBoxesForgetsThem();

    void aButtonIsChosen_data();
    void aButtonIsChosen();
    void anOwnButtonIsPressed();
    void anOwnDefaultButtonIsPressed();
    void theDetailsButtonIsNotPressed();
    void aDisabledButtonIsNotPressed();
    void aBoxWithoutUsableButtonsIsRejected();

    void theWishedAnswerIsGiven();
    void aWishedAnswerThatTheBoxLacksIsPassedOver();
    void aDisabledWishIsPassedOver();

    void staticFunctionsReturn();
    void openAndShowAreAnswered();
    void nestedBoxesAreAnswered();
    void aBoxThatIsShownAgainIsAnsweredAgain();
    void aBoxThatClosesItselfIsNoMatter();
    void aBoxThatIsDeletedIsNoMatter();
    void aReceiverMayCloseTheBox();
    void aReceiverMayDeleteTheBox();
    void otherDialogsAreLeftAlone();
    void afterItsEndNothingIsAnswered();

private:
    std::unique_ptr<TVLUnattendedMessageBoxes> mMessageBoxes;
};

void TstUnattended::init()
{
    mMessageBoxes = std::make_unique<TVLUnattendedMessageBoxes>();
}

void TstUnattended::cleanup()
{
    mMessageBoxes.reset();
}

void TstUnattended::aBoxIsRecorded()
{
    QMessageBox box(QMessageBox::Warning, u"Title"_s, u"Text"_s,
                    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    box.setInformativeText(u"Informative"_s);
    box.setDetailedText(u"Detailed"_s);
    box.setDefaultButton(QMessageBox::Discard);
    QCOMPARE(box.exec(), int(QMessageBox::Discard));

    QCOMPARE(mMessageBoxes->boxes().size(), 1);
    const Box record = mMessageBoxes->boxes().constFirst();
    QCOMPARE(record.title, u"Title"_s);
    QCOMPARE(record.text, u"Text"_s);
    QCOMPARE(record.informativeText, u"Informative"_s);
    QCOMPARE(record.detailedText, u"Detailed"_s);
    QCOMPARE(record.icon, QMessageBox::Warning);
    QCOMPARE(record.standardButtons,
             QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    QCOMPARE(record.button, QMessageBox::Discard);
    QCOMPARE(record.buttonText, box.button(QMessageBox::Discard)->text());
}

void TstUnattended::aBoxIsAnnouncedBeforeItCloses()
{
    QSignalSpy spy(mMessageBoxes.get(), &TVLUnattendedMessageBoxes::answered);
    QMessageBox box(QMessageBox::Information, u"Title"_s, u"Text"_s, QMessageBox::Ok);
    bool wasVisible = false;
    connect(mMessageBoxes.get(), &TVLUnattendedMessageBoxes::answered, &box,
            [&] { wasVisible = box.isVisible(); });
    box.exec();
    QVERIFY(wasVisible);
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy.constFirst().constFirst().value<Box>().text, u"Text"_s);
}

void TstUnattended::takingTheBoxesForgetsThem()
{
    QMessageBox::information(nullptr, u"Title"_s, u"One"_s);
    QMessageBox::information(nullptr, u"Title"_s, u"Two"_s);
    QCOMPARE(textsOf(mMessageBoxes->boxes()), QStringList({u"One"_s, u"Two"_s}));
    QCOMPARE(textsOf(mMessageBoxes->takeBoxes()), QStringList({u"One"_s, u"Two"_s}));
    QVERIFY(mMessageBoxes->boxes().isEmpty());
    QVERIFY(mMessageBoxes->takeBoxes().isEmpty());
}

void TstUnattended::aButtonIsChosen_data()
{
    QTest::addColumn<Buttons>("buttons");
    QTest::addColumn<Button>("defaultButton");
    QTest::addColumn<Button>("escapeButton");
    QTest::addColumn<Button>("expected");

    const auto row = [](const char *name, Buttons buttons, Button defaultButton,
                        Button escapeButton, Button expected) {
        QTest::newRow(name) << buttons << defaultButton << escapeButton << expected;
    };
    const Button none = QMessageBox::NoButton;
    const Buttons yesNo = QMessageBox::Yes | QMessageBox::No;
    const Buttons okCancel = QMessageBox::Ok | QMessageBox::Cancel;
    row("none", none, none, none, QMessageBox::Ok);
    row("one", QMessageBox::Close, none, none, QMessageBox::Close);
    row("default", yesNo, QMessageBox::Yes, none, QMessageBox::Yes);
    row("default before escape", yesNo, QMessageBox::Yes, QMessageBox::No, QMessageBox::Yes);
    row("escape", yesNo, none, QMessageBox::Yes, QMessageBox::Yes);
    row("Escape key means cancel", okCancel, none, none, QMessageBox::Cancel);
    row("Escape key means close", QMessageBox::Apply | QMessageBox::Close, none, none,
        QMessageBox::Close);
    row("Escape key means no", yesNo, none, none, QMessageBox::No);
    row("Escape key means cancel and not no", yesNo | QMessageBox::Cancel, none, none,
        QMessageBox::Cancel);
    row("first", QMessageBox::Yes | QMessageBox::YesToAll | QMessageBox::Ignore, none, none,
        QMessageBox::Ignore);
}

void TstUnattended::aButtonIsChosen()
{
    QFETCH(Buttons, buttons);
    QFETCH(Button, defaultButton);
    QFETCH(Button, escapeButton);
    QFETCH(Button, expected);
    QMessageBox box;
    // Even setting none would keep the box from adding its own.
    if (buttons != QMessageBox::NoButton)
        box.setStandardButtons(buttons);
    box.setDefaultButton(defaultButton);
    box.setEscapeButton(escapeButton);
    QCOMPARE(box.exec(), int(expected));
    QCOMPARE(mMessageBoxes->boxes().size(), 1);
    QCOMPARE(mMessageBoxes->boxes().constFirst().button, expected);
}

void TstUnattended::anOwnButtonIsPressed()
{
    QMessageBox box;
    const QAbstractButton *first = box.addButton(u"Merge"_s, QMessageBox::AcceptRole);
    box.addButton(u"Replace"_s, QMessageBox::AcceptRole);
    box.exec();
    QCOMPARE(box.clickedButton(), first);
    QCOMPARE(mMessageBoxes->boxes().constFirst().button, QMessageBox::NoButton);
    QCOMPARE(mMessageBoxes->boxes().constFirst().buttonText, u"Merge"_s);
}

void TstUnattended::anOwnDefaultButtonIsPressed()
{
    QMessageBox box(QMessageBox::Question, u"Title"_s, u"Text"_s, QMessageBox::Cancel);
    QPushButton *merge = box.addButton(u"Merge"_s, QMessageBox::ActionRole);
    box.setDefaultButton(merge);
    box.exec();
    QCOMPARE(box.clickedButton(), merge);
}

void TstUnattended::theDetailsButtonIsNotPressed()
{
    // It would come first in the box.
    QMessageBox box(QMessageBox::Question, u"Title"_s, u"Text"_s,
                    QMessageBox::Yes | QMessageBox::YesToAll);
    box.setDetailedText(u"Detailed"_s);
    QCOMPARE(box.exec(), int(QMessageBox::Yes));
}

void TstUnattended::aDisabledButtonIsNotPressed()
{
    QMessageBox box(QMessageBox::Question, u"Title"_s, u"Text"_s,
                    QMessageBox::Ok | QMessageBox::Cancel);
    box.setDefaultButton(QMessageBox::Ok);
    box.button(QMessageBox::Ok)->setEnabled(false);
    QCOMPARE(box.exec(), int(QMessageBox::Cancel));
}

void TstUnattended::aBoxWithoutUsableButtonsIsRejected()
{
    QMessageBox box(QMessageBox::Question, u"Title"_s, u"Text"_s, QMessageBox::Ok);
    box.button(QMessageBox::Ok)->setEnabled(false);
    QCOMPARE(box.exec(), int(QDialog::Rejected));
    QCOMPARE(mMessageBoxes->boxes().size(), 1);
    QCOMPARE(mMessageBoxes->boxes().constFirst().button, QMessageBox::NoButton);
    QCOMPARE(mMessageBoxes->boxes().constFirst().buttonText, QString());

    QMessageBox bareBox;
    bareBox.setStandardButtons(QMessageBox::NoButton);
    QCOMPARE(bareBox.exec(), int(QDialog::Rejected));
}

void TstUnattended::theWishedAnswerIsGiven()
{
    const Buttons yesNo = QMessageBox::Yes | QMessageBox::No;
    mMessageBoxes->setAnswer(QMessageBox::Yes);
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(QMessageBox::question(nullptr, u"Title"_s, u"Text"_s, yesNo, QMessageBox::No),
                 QMessageBox::Yes);
    }
    mMessageBoxes->setAnswer(QMessageBox::NoButton);
    QCOMPARE(QMessageBox::question(nullptr, u"Title"_s, u"Text"_s, yesNo, QMessageBox::No),
             QMessageBox::No);
}

void TstUnattended::aWishedAnswerThatTheBoxLacksIsPassedOver()
{
    mMessageBoxes->setAnswer(QMessageBox::Retry);
    QCOMPARE(QMessageBox::warning(nullptr, u"Title"_s, u"Text"_s,
                                  QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Ok),
             QMessageBox::Ok);
}

void TstUnattended::aDisabledWishIsPassedOver()
{
    mMessageBoxes->setAnswer(QMessageBox::Ok);
    QMessageBox box(QMessageBox::Question, u"Title"_s, u"Text"_s,
                    QMessageBox::Ok | QMessageBox::Cancel);
    box.button(QMessageBox::Ok)->setEnabled(false);
    QCOMPARE(box.exec(), int(QMessageBox::Cancel));
}

void TstUnattended::staticFunctionsReturn()
{
    QCOMPARE(QMessageBox::information(nullptr, u"I"_s, u"Text"_s), QMessageBox::Ok);
    QCOMPARE(QMessageBox::warning(nullptr, u"W"_s, u"Text"_s), QMessageBox::Ok);
    QCOMPARE(QMessageBox::critical(nullptr, u"C"_s, u"Text"_s), QMessageBox::Ok);
    QCOMPARE(QMessageBox::question(nullptr, u"Q"_s, u"Text"_s), QMessageBox::No);
    QMessageBox::about(nullptr, u"A"_s, u"Text"_s);
    QCOMPARE(mMessageBoxes->boxes().size(), 5);
}

void TstUnattended::openAndShowAreAnswered()
{
    QWidget window;
    window.show();
    QMessageBox opened(QMessageBox::Information, u"Title"_s, u"opened"_s, QMessageBox::Ok, &window);
    opened.open();
    QMessageBox shown(QMessageBox::Information, u"Title"_s, u"shown"_s, QMessageBox::Ok);
    shown.setModal(false);
    shown.show();
    QVERIFY(opened.isVisible());
    QVERIFY(shown.isVisible());

    QCoreApplication::processEvents();
    QVERIFY(!opened.isVisible());
    QVERIFY(!shown.isVisible());
    QCOMPARE(textsOf(mMessageBoxes->boxes()), QStringList({u"opened"_s, u"shown"_s}));
    QCOMPARE(opened.result(), int(QMessageBox::Ok));
    QCOMPARE(shown.result(), int(QMessageBox::Ok));
}

void TstUnattended::nestedBoxesAreAnswered()
{
    QMessageBox outer(QMessageBox::Question, u"Title"_s, u"outer"_s, QMessageBox::Yes);
    Button middleResult = QMessageBox::NoButton;
    Button innerResult = QMessageBox::NoButton;
    connect(&outer, &QMessageBox::buttonClicked, &outer, [&] {
        QMessageBox middle(QMessageBox::Question, u"Title"_s, u"middle"_s, QMessageBox::Retry,
                           &outer);
        // Comes before the answer to the middle box, whose loop runs by then.
        QMetaObject::invokeMethod(
            &middle,
            [&] {
                innerResult =
                    QMessageBox::warning(&middle, u"Title"_s, u"inner"_s, QMessageBox::Abort);
            },
            Qt::QueuedConnection);
        middleResult = Button(middle.exec());
    });
    QCOMPARE(outer.exec(), int(QMessageBox::Yes));
    QCOMPARE(middleResult, QMessageBox::Retry);
    QCOMPARE(innerResult, QMessageBox::Abort);
    const QStringList texts = textsOf(mMessageBoxes->boxes());
    QCOMPARE(texts.size(), 3);
    QCOMPARE(texts.constFirst(), u"outer"_s);
    QVERIFY(texts.contains(u"middle"_s));
    QVERIFY(texts.contains(u"inner"_s));
}

void TstUnattended::aBoxThatIsShownAgainIsAnsweredAgain()
{
    QMessageBox box(QMessageBox::Question, u"Title"_s, u"Text"_s,
                    QMessageBox::Retry | QMessageBox::Cancel);
    box.setDefaultButton(QMessageBox::Retry);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(box.exec(), int(QMessageBox::Retry));
    QCOMPARE(mMessageBoxes->boxes().size(), 3);
}

void TstUnattended::aBoxThatClosesItselfIsNoMatter()
{
    QMessageBox box(QMessageBox::Information, u"Title"_s, u"Text"_s, QMessageBox::Ok);
    box.show();
    box.hide();
    QCoreApplication::processEvents();
    QVERIFY(mMessageBoxes->boxes().isEmpty());
}

void TstUnattended::aBoxThatIsDeletedIsNoMatter()
{
    auto box = std::make_unique<QMessageBox>();
    box->show();
    box.reset();
    QCoreApplication::processEvents();
    QVERIFY(mMessageBoxes->boxes().isEmpty());
}

void TstUnattended::aReceiverMayCloseTheBox()
{
    QMessageBox box(QMessageBox::Information, u"Title"_s, u"Text"_s, QMessageBox::Ok);
    connect(mMessageBoxes.get(), &TVLUnattendedMessageBoxes::answered, &box, [&] { box.done(77); });
    QCOMPARE(box.exec(), 77);
    QCOMPARE(box.clickedButton(), nullptr);
}

void TstUnattended::aReceiverMayDeleteTheBox()
{
    auto box = std::make_unique<QMessageBox>();
    connect(mMessageBoxes.get(), &TVLUnattendedMessageBoxes::answered, this, [&] { box.reset(); });
    box->show();
    QCoreApplication::processEvents();
    QVERIFY(!box);
    QCOMPARE(mMessageBoxes->boxes().size(), 1);
    mMessageBoxes->disconnect(this);
}

void TstUnattended::otherDialogsAreLeftAlone()
{
    QDialog dialog;
    dialog.show();
    QProgressDialog progress(u"Label"_s, u"Cancel"_s, 0, 10);
    progress.show();
    QErrorMessage error;
    error.showMessage(u"Text"_s);
    // A box at last, so that whatever was queued before it has run.
    QMessageBox::information(nullptr, u"Title"_s, u"Text"_s);
    QVERIFY(dialog.isVisible());
    QVERIFY(progress.isVisible());
    QVERIFY(!progress.wasCanceled());
    QVERIFY(error.isVisible());
    QCOMPARE(mMessageBoxes->boxes().size(), 1);
}

void TstUnattended::afterItsEndNothingIsAnswered()
{
    QMessageBox box(QMessageBox::Information, u"Title"_s, u"Text"_s, QMessageBox::Ok);
    box.show();
    mMessageBoxes.reset();
    QCoreApplication::processEvents();
    QVERIFY(box.isVisible());
    QMessageBox another(QMessageBox::Information, u"Title"_s, u"Text"_s, QMessageBox::Ok);
    another.show();
    QCoreApplication::processEvents();
    QVERIFY(another.isVisible());
}

TVL_TEST(TstUnattended)

#include "tst_unattended.moc"
