#include "TestMain.h"

#include "TVLMessageBox.h"
#include "TVLUnattendedMessageBoxes.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTranslator>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

using Box = TVLUnattendedMessageBoxes::Box;
using Button = QMessageBox::StandardButton;
using Buttons = QMessageBox::StandardButtons;
using Entity = TVLMessageBox::Entity;

/** The functions that have words for entities. */
enum Message {
    Overwrite,
    Remove,
    Reset,
    NotCreated,
    NotOpened,
    NotRead,
    NotRemoved,
    NotWritten,
    NotOpenedToWrite,
    Incompatible,
    ToBeUpdated,
};

constexpr Message Messages[] = {
    Overwrite,  Remove,           Reset,        NotCreated,  NotOpened, NotRead, NotRemoved,
    NotWritten, NotOpenedToWrite, Incompatible, ToBeUpdated,
};

/** Shows a message; with the buttons that the function has by itself where none are given. */
Button show(Message message, Entity entity, const QString &path,
            Buttons buttons = QMessageBox::NoButton, Button defaultButton = QMessageBox::NoButton)
{
    const auto ask = [&](auto function, const auto &...more) {
        return function(nullptr, entity, more..., buttons, defaultButton);
    };
    switch (message) {
    case Overwrite:
        return buttons ? ask(TVLMessageBox::confirmOverwrite, path)
                       : TVLMessageBox::confirmOverwrite(nullptr, entity, path);
    case Remove:
        return buttons ? ask(TVLMessageBox::confirmRemove, path)
                       : TVLMessageBox::confirmRemove(nullptr, entity, path);
    case Reset:
        return buttons ? ask(TVLMessageBox::confirmReset)
                       : TVLMessageBox::confirmReset(nullptr, entity);
    case NotCreated:
        return buttons ? ask(TVLMessageBox::couldNotCreate, path)
                       : TVLMessageBox::couldNotCreate(nullptr, entity, path);
    case NotOpened:
        return buttons ? ask(TVLMessageBox::couldNotOpen, path)
                       : TVLMessageBox::couldNotOpen(nullptr, entity, path);
    case NotRead:
        return buttons ? ask(TVLMessageBox::couldNotRead, path)
                       : TVLMessageBox::couldNotRead(nullptr, entity, path);
    case NotRemoved:
        return buttons ? ask(TVLMessageBox::couldNotRemove, path)
                       : TVLMessageBox::couldNotRemove(nullptr, entity, path);
    case NotWritten:
        return buttons ? ask(TVLMessageBox::couldNotWrite, path, QString(), QString())
                       : TVLMessageBox::couldNotWrite(nullptr, entity, path);
    case NotOpenedToWrite:
        return buttons ? ask(TVLMessageBox::couldNotOpenForWrite, path, QString())
                       : TVLMessageBox::couldNotOpenForWrite(nullptr, entity, path);
    case Incompatible:
        return buttons ? ask(TVLMessageBox::incompatible, path)
                       : TVLMessageBox::incompatible(nullptr, entity, path);
    case ToBeUpdated:
        return buttons ? ask(TVLMessageBox::entityNeedsUpdating, path)
                       : TVLMessageBox::entityNeedsUpdating(nullptr, entity, path);
    }
    return QMessageBox::NoButton;
}

/** The buttons that a message has by itself; the default is the last of them. */
QList<Button> ownButtons(Message message)
{
    switch (message) {
    case Overwrite:
    case Remove:
    case Reset:
        return {QMessageBox::Yes, QMessageBox::No};
    case ToBeUpdated:
        return {QMessageBox::Ok, QMessageBox::Cancel};
    default:
        return {QMessageBox::Ok};
    }
}

Buttons together(const QList<Button> &buttons)
{
    Buttons all;
    for (const Button button : buttons)
        all |= button;
    return all;
}

QString pathOf(Entity entity)
{
    switch (entity) {
    case TVLMessageBox::ProjectEntity:
        return u"/home/jo/My Novel.tavel"_s;
    case TVLMessageBox::DirectoryEntity:
        return u"/home/jo/Texts"_s;
    case TVLMessageBox::FileEntity:
        return u"/home/jo/Texts/one.rtf"_s;
    case TVLMessageBox::CompileSettingsEntity:
        return u"My Settings"_s;
    case TVLMessageBox::ExportedCompileSettingsEntity:
        return u"/home/jo/settings.xml"_s;
    case TVLMessageBox::ApplicationSettingsEntity:
        return u"/home/jo/app.ini"_s;
    case TVLMessageBox::TemplateEntity:
        return u"My Template"_s;
    }
    return u"/home/jo/Something"_s;
}

/** Puts a mark before each text that goes through it. */
class MarkingTranslator : public QTranslator
{
public:
    MarkingTranslator() { QCoreApplication::installTranslator(this); }

    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char *context, const char *text,
                                    const char * /*disambiguation*/, int /*n*/) const override
    {
        if (QByteArray(context) != "TVLMessageBox")
            return {};
        return u'#' + QString::fromUtf8(text);
    }
};

QGridLayout *gridOf(const QMessageBox *box)
{
    return qobject_cast<QGridLayout *>(box->layout());
}

/** The spacer in the last row of a box, or null. */
QSpacerItem *lastSpacer(const QMessageBox *box)
{
    const QGridLayout *grid = gridOf(box);
    QLayoutItem *item = grid->itemAtPosition(grid->rowCount() - 1, 0);
    return item ? item->spacerItem() : nullptr;
}

} // namespace

Q_DECLARE_METATYPE(Message)

/** The standard messages. */
class TstMessageBox : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void anEntityHasItsWords_data();
    void anEntityHasItsWords();
    void everyWordIsTranslated_data() { anEntityHasItsWords_data(); }
    void everyWordIsTranslated();
    void anEntityWithoutWordsShowsNothing_data();
    void anEntityWithoutWordsShowsNothing();
    void buttonsAreAsAsked_data();
    void buttonsAreAsAsked();
    void theAnswerIsGivenBack();
    void anErrorStandsInPlaceOfTheAdvice_data();
    void anErrorStandsInPlaceOfTheAdvice();
    void aFailedWriteHasTheTitleGiven();
    void aProjectOfANewerProgramCannotBeOpened();

    void aFolderIsNamedWithoutThoseAboveIt_data();
    void aFolderIsNamedWithoutThoseAboveIt();
    void aTitleIsNotTakenForAPath_data();
    void aTitleIsNotTakenForAPath();
    void aPathStandsAsItIs_data();
    void aPathStandsAsItIs();

    void savingIntoAProjectIsRefused_data();
    void savingIntoAProjectIsRefused();
    void theRefusalHasTheTextGiven();

    void aCheckStandsBeforeTheButtons();
    void aCheckKeepsItsValue_data();
    void aCheckKeepsItsValue();
    void aBoxWithoutButtonsGetsOneForItsCheck();
    void withoutAValueThereIsNoCheck();

    void aGeneralBoxHasWhatIsGiven();
    void aGeneralBoxLeavesOutWhatIsEmpty();
    void aGeneralBoxIsWide();
    void aGeneralBoxMayHaveACheck();
    void aBoxIsModalOverItsParent();
    void aBoxThatGoesWithItsParentIsCancelled();

private:
    /** Looks at the next box before it is answered. */
    void look(const std::function<void(QMessageBox *)> &action)
    {
        connect(mBoxes.get(), &TVLUnattendedMessageBoxes::answered, this, [action] {
            action(qobject_cast<QMessageBox *>(QApplication::activeModalWidget()));
        });
    }

    std::unique_ptr<TVLUnattendedMessageBoxes> mBoxes;
};

void TstMessageBox::init()
{
    mBoxes = std::make_unique<TVLUnattendedMessageBoxes>();
}

void TstMessageBox::cleanup()
{
    mBoxes.reset();
}

// --- The tables

void TstMessageBox::anEntityHasItsWords_data()
{
    QTest::addColumn<Message>("message");
    QTest::addColumn<Entity>("entity");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("informativeText");

    QTest::newRow("overwrite, project")
        << Overwrite << TVLMessageBox::ProjectEntity
        << u"Project 'My Novel.tavel' already exists."_s
        << u"The project at '/home/jo/My Novel.tavel' already exists. If you continue this project will be overwritten. Continue?"_s;
    QTest::newRow("overwrite, directory")
        << Overwrite << TVLMessageBox::DirectoryEntity << u"Directory 'Texts' already exists."_s
        << u"The directory at '/home/jo/Texts' already exists. If you continue this directory will be overwritten. Continue?"_s;
    QTest::newRow("overwrite, file")
        << Overwrite << TVLMessageBox::FileEntity << u"File 'one.rtf' already exists."_s
        << u"File at '/home/jo/Texts/one.rtf' already exists. If you continue this file will be overwritten. Continue?"_s;
    QTest::newRow("overwrite, compile settings")
        << Overwrite << TVLMessageBox::CompileSettingsEntity
        << u"Compile Settings 'My Settings' already exists. "_s
        << u"Compile settings with the name 'My Settings' already exists. If you continue these settings will be overwritten. Continue?"_s;
    QTest::newRow("overwrite, exported compile settings")
        << Overwrite << TVLMessageBox::ExportedCompileSettingsEntity
        << u"Compile Settings 'settings.xml' already exists."_s
        << u"Exported compile settings at '/home/jo/settings.xml' already exists. If you continue these settings will be overwritten. Continue?"_s;
    QTest::newRow("overwrite, application settings")
        << Overwrite << TVLMessageBox::ApplicationSettingsEntity
        << u"Application Settings 'app.ini' already exists."_s
        << u"Application settings at '/home/jo/app.ini' already exists. If you continue these settings will be overwritten. Continue?"_s;
    QTest::newRow("overwrite, template")
        << Overwrite << TVLMessageBox::TemplateEntity << u"Template 'My Template' already exists."_s
        << u"Template 'My Template' already exists. If you continue this template will be overwritten. Continue?"_s;
    QTest::newRow("remove, project")
        << Remove << TVLMessageBox::ProjectEntity << u"Remove project: My Novel.tavel"_s
        << u"Remove project at: /home/jo/My Novel.tavel"_s;
    QTest::newRow("remove, directory")
        << Remove << TVLMessageBox::DirectoryEntity << u"Remove directory: Texts"_s
        << u"Remove directory at: /home/jo/Texts"_s;
    QTest::newRow("remove, file") << Remove << TVLMessageBox::FileEntity
                                  << u"Remove file: one.rtf"_s
                                  << u"Remove file at: /home/jo/Texts/one.rtf"_s;
    QTest::newRow("remove, compile settings")
        << Remove << TVLMessageBox::CompileSettingsEntity
        << u"Remove compile settings: My Settings"_s << QString();
    QTest::newRow("remove, exported compile settings")
        << Remove << TVLMessageBox::ExportedCompileSettingsEntity
        << u"Remove exported compile settings: settings.xml"_s
        << u"Remove exported compile settings at: /home/jo/settings.xml"_s;
    QTest::newRow("remove, application settings")
        << Remove << TVLMessageBox::ApplicationSettingsEntity
        << u"Remove application settings: app.ini"_s
        << u"Remove application settings at: /home/jo/app.ini"_s;
    QTest::newRow("remove, template") << Remove << TVLMessageBox::TemplateEntity
                                      << u"Remove template: My Template"_s << QString();
    QTest::newRow("reset, compile settings")
        << Reset << TVLMessageBox::CompileSettingsEntity << u"Reset compile settings to defaults?"_s
        << u"This action will reset your settings to the default values and cannot be undone. Continue?"_s;
    QTest::newRow("reset, application settings")
        << Reset << TVLMessageBox::ApplicationSettingsEntity
        << u"Reset application settings to defaults?"_s
        << u"This action will reset your settings to the default values and cannot be undone. Continue?"_s;
    QTest::newRow("not created, project")
        << NotCreated << TVLMessageBox::ProjectEntity
        << u"Could not create project: My Novel.tavel"_s
        << u"Could not create project at: /home/jo/My Novel.tavel"_s;
    QTest::newRow("not created, directory")
        << NotCreated << TVLMessageBox::DirectoryEntity << u"Could not create directory: Texts"_s
        << u"Could not create directory at: /home/jo/Texts"_s;
    QTest::newRow("not created, file")
        << NotCreated << TVLMessageBox::FileEntity << u"Could not create file: one.rtf"_s
        << u"Could not create file at: /home/jo/Texts/one.rtf"_s;
    QTest::newRow("not opened, project")
        << NotOpened << TVLMessageBox::ProjectEntity << u"Could not open project: My Novel.tavel"_s
        << u"File does not exist at: /home/jo/My Novel.tavel"_s;
    QTest::newRow("not opened, directory")
        << NotOpened << TVLMessageBox::DirectoryEntity << u"Could not open directory: Texts"_s
        << u"Could not open directory at: /home/jo/Texts"_s;
    QTest::newRow("not opened, file")
        << NotOpened << TVLMessageBox::FileEntity << u"Could not open file: one.rtf"_s
        << u"Could not open file at: /home/jo/Texts/one.rtf"_s;
    QTest::newRow("not opened, compile settings")
        << NotOpened << TVLMessageBox::CompileSettingsEntity
        << u"Could not open compile settings: My Settings"_s << QString();
    QTest::newRow("not opened, exported compile settings")
        << NotOpened << TVLMessageBox::ExportedCompileSettingsEntity
        << u"Could not open exported compile settings: settings.xml"_s
        << u"Could not open exported compile settings at: /home/jo/settings.xml"_s;
    QTest::newRow("not opened, application settings")
        << NotOpened << TVLMessageBox::ApplicationSettingsEntity
        << u"Could not open application settings: app.ini"_s
        << u"Could not open application settings at: /home/jo/app.ini"_s;
    QTest::newRow("not opened, template") << NotOpened << TVLMessageBox::TemplateEntity
                                          << u"Could not open template: My Template"_s << QString();
    QTest::newRow("not read, directory")
        << NotRead << TVLMessageBox::DirectoryEntity << u"Could not read directory: Texts"_s
        << u"Could not read directory at: /home/jo/Texts"_s;
    QTest::newRow("not read, file")
        << NotRead << TVLMessageBox::FileEntity << u"Could not read file: one.rtf"_s
        << u"Could not read file at: /home/jo/Texts/one.rtf"_s;
    QTest::newRow("not read, compile settings")
        << NotRead << TVLMessageBox::CompileSettingsEntity
        << u"Could not read compile settings: My Settings"_s << QString();
    QTest::newRow("not read, exported compile settings")
        << NotRead << TVLMessageBox::ExportedCompileSettingsEntity
        << u"Could not import compile settings: settings.xml"_s
        << u"Could not import compile settings at: /home/jo/settings.xml"_s;
    QTest::newRow("not read, application settings")
        << NotRead << TVLMessageBox::ApplicationSettingsEntity
        << u"Could not read application settings: app.ini"_s
        << u"Could not read application settings at: /home/jo/app.ini"_s;
    QTest::newRow("not read, template") << NotRead << TVLMessageBox::TemplateEntity
                                        << u"Could not read template: My Template"_s << QString();
    QTest::newRow("not removed, project")
        << NotRemoved << TVLMessageBox::ProjectEntity
        << u"Could not remove project: My Novel.tavel"_s
        << u"Could not remove project at: /home/jo/My Novel.tavel"_s;
    QTest::newRow("not removed, directory")
        << NotRemoved << TVLMessageBox::DirectoryEntity << u"Could not remove directory: Texts"_s
        << u"Could not remove directory at: /home/jo/Texts"_s;
    QTest::newRow("not removed, file")
        << NotRemoved << TVLMessageBox::FileEntity << u"Could not remove file: one.rtf"_s
        << u"Could remove file at: /home/jo/Texts/one.rtf"_s;
    QTest::newRow("not removed, compile settings")
        << NotRemoved << TVLMessageBox::CompileSettingsEntity
        << u"Could not remove compile settings: My Settings"_s << QString();
    QTest::newRow("not removed, exported compile settings")
        << NotRemoved << TVLMessageBox::ExportedCompileSettingsEntity
        << u"Could not remove exported compile settings: settings.xml"_s
        << u"Could not remove exported compile settings at: /home/jo/settings.xml"_s;
    QTest::newRow("not removed, application settings")
        << NotRemoved << TVLMessageBox::ApplicationSettingsEntity
        << u"Could not remove application settings: app.ini"_s
        << u"Could not remove application settings at: /home/jo/app.ini"_s;
    QTest::newRow("not removed, template")
        << NotRemoved << TVLMessageBox::TemplateEntity
        << u"Could not remove template: My Template"_s << QString();
    QTest::newRow("not written, project")
        << NotWritten << TVLMessageBox::ProjectEntity << u"Could not save project: My Novel.tavel"_s
        << u"Tavelinor does not allow saving to a project's .tavel folder.\n\nPlease select another location."_s;
    QTest::newRow("not written, directory")
        << NotWritten << TVLMessageBox::DirectoryEntity << u"Could not write to directory: Texts"_s
        << u"Could not write to directory at: /home/jo/Texts\nPlease check the file is not in use by any other applications."_s;
    QTest::newRow("not written, file")
        << NotWritten << TVLMessageBox::FileEntity << u"Could not save file: one.rtf"_s
        << u"Could not save file at: /home/jo/Texts/one.rtf\nPlease check the file is not in use by any other applications."_s;
    QTest::newRow("not written, compile settings")
        << NotWritten << TVLMessageBox::CompileSettingsEntity
        << u"Could not save compile settings: My Settings"_s
        << u"Please check the file is not in use by any other application."_s;
    QTest::newRow("not written, exported compile settings")
        << NotWritten << TVLMessageBox::ExportedCompileSettingsEntity
        << u"Could not save export compile settings: settings.xml"_s
        << u"Please check the file is not in use by any other application."_s;
    QTest::newRow("not written, application settings")
        << NotWritten << TVLMessageBox::ApplicationSettingsEntity
        << u"Could not save application settings: app.ini"_s
        << u"Please check the file is not in use by any other application."_s;
    QTest::newRow("not written, template")
        << NotWritten << TVLMessageBox::TemplateEntity << u"Could not save template: My Template"_s
        << u"Please check the file is not in use by any other application."_s;
    QTest::newRow("not opened to write, project")
        << NotOpenedToWrite << TVLMessageBox::ProjectEntity
        << u"Could not save project: My Novel.tavel"_s
        << u"Tavelinor does not allow saving to a project's .tavel folder.\n\nPlease select another location."_s;
    QTest::newRow("not opened to write, directory")
        << NotOpenedToWrite << TVLMessageBox::DirectoryEntity
        << u"Could not write to directory: Texts"_s
        << u"Could not write to the directory at: /home/jo/Texts"_s;
    QTest::newRow("not opened to write, file")
        << NotOpenedToWrite << TVLMessageBox::FileEntity << u"Could not save file: one.rtf"_s
        << u"Could not save file at: /home/jo/Texts/one.rtf\nPlease check the file is not in use by any other applications."_s;
    QTest::newRow("not opened to write, compile settings")
        << NotOpenedToWrite << TVLMessageBox::CompileSettingsEntity
        << u"Could not save compile settings: My Settings"_s
        << u"Please check the file is not in use by any other application."_s;
    QTest::newRow("not opened to write, exported compile settings")
        << NotOpenedToWrite << TVLMessageBox::ExportedCompileSettingsEntity
        << u"Could not save export compile settings: settings.xml"_s
        << u"Please check the file is not in use by any other application."_s;
    QTest::newRow("not opened to write, application settings")
        << NotOpenedToWrite << TVLMessageBox::ApplicationSettingsEntity
        << u"Could not save application settings: app.ini"_s
        << u"Please check the file is not in use by any other application."_s;
    QTest::newRow("not opened to write, template")
        << NotOpenedToWrite << TVLMessageBox::TemplateEntity
        << u"Could not save template: My Template"_s
        << u"Please check the file is not in use by any other application."_s;
    QTest::newRow("incompatible, project")
        << Incompatible << TVLMessageBox::ProjectEntity
        << u"Project 'My Novel.tavel' is incompatible with this version of Tavelinor."_s
        << u"The project at '/home/jo/My Novel.tavel' is incompatible with this version of Tavelinor."_s;
    QTest::newRow("to be updated, project")
        << ToBeUpdated << TVLMessageBox::ProjectEntity
        << u"Project 'My Novel.tavel' needs to be updated."_s
        << u"The project at '/home/jo/My Novel.tavel' is from a previous version of Tavelinor and needs updating. Updating this project will make it incompatible with earlier versions of Tavelinor."_s;
}

void TstMessageBox::anEntityHasItsWords()
{
    QFETCH(const Message, message);
    QFETCH(const Entity, entity);
    const Button answer = show(message, entity, pathOf(entity));
    const QList<Box> boxes = mBoxes->boxes();
    QCOMPARE(boxes.size(), 1);
    const Box &box = boxes.constFirst();
    QCOMPARE(box.title, QString());
    QTEST(box.text, "text");
    QTEST(box.informativeText, "informativeText");
    QCOMPARE(box.icon, message == Reset ? QMessageBox::Question : QMessageBox::Warning);
    QCOMPARE(box.standardButtons, together(ownButtons(message)));
    QCOMPARE(box.button, ownButtons(message).constLast());
    QCOMPARE(answer, ownButtons(message).constLast());
}

void TstMessageBox::everyWordIsTranslated()
{
    QFETCH(const Message, message);
    QFETCH(const Entity, entity);
    QFETCH(const QString, text);
    QFETCH(const QString, informativeText);
    const MarkingTranslator translator;
    show(message, entity, pathOf(entity));
    const Box box = mBoxes->boxes().constFirst();
    QCOMPARE(box.text, u'#' + text);
    QCOMPARE(box.informativeText, informativeText.isEmpty() ? QString() : u'#' + informativeText);
}

void TstMessageBox::anEntityWithoutWordsShowsNothing_data()
{
    QTest::addColumn<Message>("message");
    QTest::addColumn<int>("entity");

    const QList<int> none;
    const QMap<Message, QList<int>> withoutWords = {
        {Overwrite, none},
        {Remove, none},
        {Reset, {0, 1, 2, 4, 6}},
        {NotCreated, {3, 4, 5, 6}},
        {NotOpened, none},
        {NotRead, {0}},
        {NotRemoved, none},
        {NotWritten, none},
        {NotOpenedToWrite, none},
        {Incompatible, {1, 2, 3, 4, 5, 6}},
        {ToBeUpdated, {1, 2, 3, 4, 5, 6}},
    };
    for (auto row = withoutWords.cbegin(); row != withoutWords.cend(); ++row) {
        // None has words for what is no entity.
        const QList<int> entities = QList<int>{-1, 7} + row.value();
        for (const int entity : entities) {
            QTest::addRow("message %d, entity %d", int(row.key()), entity) << row.key() << entity;
        }
    }
}

void TstMessageBox::anEntityWithoutWordsShowsNothing()
{
    QFETCH(const Message, message);
    QFETCH(const int, entity);
    QCOMPARE(show(message, Entity(entity), u"/home/jo/x"_s), QMessageBox::Cancel);
    QCOMPARE(mBoxes->boxes().size(), 0);
}

void TstMessageBox::buttonsAreAsAsked_data()
{
    QTest::addColumn<Message>("message");
    for (const Message message : Messages)
        QTest::addRow("message %d", int(message)) << message;
}

void TstMessageBox::buttonsAreAsAsked()
{
    QFETCH(const Message, message);
    const Buttons buttons = QMessageBox::Save | QMessageBox::Discard | QMessageBox::Abort;
    const Entity entity = message == Reset || message == NotRead
        ? TVLMessageBox::CompileSettingsEntity
        : TVLMessageBox::ProjectEntity;
    QCOMPARE(show(message, entity, pathOf(entity), buttons, QMessageBox::Discard),
             QMessageBox::Discard);
    QCOMPARE(mBoxes->boxes().constFirst().standardButtons, buttons);
    QCOMPARE(mBoxes->boxes().constFirst().button, QMessageBox::Discard);
}

void TstMessageBox::theAnswerIsGivenBack()
{
    mBoxes->setAnswer(QMessageBox::Yes);
    QCOMPARE(TVLMessageBox::confirmOverwrite(nullptr, TVLMessageBox::FileEntity, u"/a"_s),
             QMessageBox::Yes);
    QCOMPARE(TVLMessageBox::confirmReset(nullptr, TVLMessageBox::ApplicationSettingsEntity),
             QMessageBox::Yes);
}

void TstMessageBox::anErrorStandsInPlaceOfTheAdvice_data()
{
    QTest::addColumn<Entity>("entity");
    for (int entity = 0; entity <= 6; ++entity)
        QTest::addRow("entity %d", entity) << Entity(entity);
}

void TstMessageBox::anErrorStandsInPlaceOfTheAdvice()
{
    QFETCH(const Entity, entity);
    const QString error = u"The disk with %1 is full."_s;
    TVLMessageBox::couldNotWrite(nullptr, entity, pathOf(entity), QString(), error);
    TVLMessageBox::couldNotOpenForWrite(nullptr, entity, pathOf(entity), error);
    show(NotWritten, entity, pathOf(entity));
    const QList<Box> boxes = mBoxes->boxes();
    QCOMPARE(boxes.at(0).informativeText, error);
    QCOMPARE(boxes.at(1).informativeText, error);
    QCOMPARE(boxes.at(0).text, boxes.at(2).text);
    QCOMPARE(boxes.at(1).text, boxes.at(2).text);
}

void TstMessageBox::aFailedWriteHasTheTitleGiven()
{
    TVLMessageBox::couldNotWrite(nullptr, TVLMessageBox::FileEntity, u"/a/b.txt"_s,
                                 u"Export Error"_s, QString());
    const Box box = mBoxes->boxes().constFirst();
    QCOMPARE(box.title, u"Export Error"_s);
    QCOMPARE(box.text, u"Could not save file: b.txt"_s);
}

void TstMessageBox::aProjectOfANewerProgramCannotBeOpened()
{
    QCOMPARE(TVLMessageBox::tavelinorNeedsUpdating(nullptr, u"/home/jo/My Novel.tavel"_s),
             QMessageBox::Ok);
    const Box box = mBoxes->boxes().constFirst();
    QCOMPARE(box.title, QString());
    QCOMPARE(box.text, u"The project \"My Novel.tavel\" could not be opened."_s);
    QCOMPARE(box.informativeText,
             u"The project you are trying to open was created or saved using a newer version of "
             "Tavelinor than the one you are currently using. You will need to update Tavelinor to "
             "open this file.\n\nTry selecting \"Check for Updates...\" from the Help menu to look "
             "for updates."_s);
    QCOMPARE(box.icon, QMessageBox::Warning);
    QCOMPARE(box.standardButtons, Buttons(QMessageBox::Ok));
}

// --- Names and paths

void TstMessageBox::aFolderIsNamedWithoutThoseAboveIt_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << u"/a/b.tavel"_s << u"b.tavel"_s;
    QTest::newRow("with a slash behind") << u"/a/b.tavel/"_s << u"b.tavel"_s;
    QTest::newRow("relative") << u"b.tavel"_s << u"b.tavel"_s;
    QTest::newRow("with dots") << u"/a/b.c.tavel"_s << u"b.c.tavel"_s;
}

void TstMessageBox::aFolderIsNamedWithoutThoseAboveIt()
{
    QFETCH(const QString, path);
    QFETCH(const QString, name);
    show(Remove, TVLMessageBox::ProjectEntity, path);
    show(Remove, TVLMessageBox::DirectoryEntity, path);
    const QList<Box> boxes = mBoxes->boxes();
    QCOMPARE(boxes.at(0).text, u"Remove project: "_s + name);
    QCOMPARE(boxes.at(0).informativeText, u"Remove project at: "_s + path);
    QCOMPARE(boxes.at(1).text, u"Remove directory: "_s + name);
    QCOMPARE(boxes.at(1).informativeText, u"Remove directory at: "_s + path);
}

void TstMessageBox::aTitleIsNotTakenForAPath_data()
{
    QTest::addColumn<Entity>("entity");
    QTest::addColumn<QString>("text");
    QTest::newRow("compile settings")
        << TVLMessageBox::CompileSettingsEntity << u"Could not read compile settings: This/That"_s;
    QTest::newRow("template") << TVLMessageBox::TemplateEntity
                              << u"Could not read template: This/That"_s;
}

void TstMessageBox::aTitleIsNotTakenForAPath()
{
    QFETCH(const Entity, entity);
    show(NotRead, entity, u"This/That"_s);
    QTEST(mBoxes->boxes().constFirst().text, "text");
}

void TstMessageBox::aPathStandsAsItIs_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("what looks like a place") << u"/a/100 %1 %2"_s;
    QTest::newRow("what looks like markup") << u"/a/<b>bold<br>"_s;
    QTest::newRow("nothing") << QString();
}

void TstMessageBox::aPathStandsAsItIs()
{
    QFETCH(const QString, path);
    QList<Qt::TextFormat> formats;
    look([&formats](QMessageBox *box) {
        const QList<QLabel *> labels = box->findChildren<QLabel *>();
        for (const QLabel *label : labels) {
            if (!label->text().isEmpty())
                formats.append(label->textFormat());
        }
    });
    show(NotOpened, TVLMessageBox::DirectoryEntity, path);
    QCOMPARE(mBoxes->boxes().constFirst().informativeText,
             u"Could not open directory at: "_s + path);
    QCOMPARE(formats, QList<Qt::TextFormat>({Qt::PlainText, Qt::PlainText}));
}

// --- Saving into a project

void TstMessageBox::savingIntoAProjectIsRefused_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("isProject");
    QTest::newRow("a project") << u"/a/Novel.tavel"_s << true;
    QTest::newRow("in a project") << u"/a/Novel.tavel/Files/Docs"_s << true;
    QTest::newRow("in capitals") << u"/a/Novel.TAVEL"_s << true;
    QTest::newRow("a hyphen behind") << u"/a/Novel.tavel-old"_s << true;
    QTest::newRow("a dot behind") << u"/a/Novel.tavel.zip"_s << true;
    QTest::newRow("a blank behind") << u"/a/Novel.tavel copy"_s << true;
    QTest::newRow("a letter behind") << u"/a/Novel.tavelx"_s << false;
    QTest::newRow("a letter of another language behind") << u"/a/Novel.tavel\u00e9"_s << false;
    QTest::newRow("a digit behind") << u"/a/Novel.tavel2"_s << false;
    QTest::newRow("without a dot") << u"/a/tavel"_s << false;
    QTest::newRow("another character before") << u"/a/Novel_tavel"_s << false;
    QTest::newRow("elsewhere") << u"/a/Backups"_s << false;
    QTest::newRow("nowhere") << QString() << false;
}

void TstMessageBox::savingIntoAProjectIsRefused()
{
    QFETCH(const QString, path);
    QFETCH(const bool, isProject);
    QCOMPARE(TVLMessageBox::isProjectContents(path, nullptr, u"Back Up To"_s, QString()),
             isProject);
    const QList<Box> boxes = mBoxes->boxes();
    QCOMPARE(boxes.size(), isProject ? 1 : 0);
    if (!isProject)
        return;
    const Box &box = boxes.constFirst();
    QCOMPARE(box.title, u"Back Up To"_s);
    QCOMPARE(box.text, u"Cannot save to a project's folder"_s);
    QCOMPARE(box.informativeText,
             u"Tavelinor does not allow exports or backups to be saved to a project's .tavel "
             "folder.\n\nPlease select another location."_s);
    QCOMPARE(box.icon, QMessageBox::Critical);
    QCOMPARE(box.standardButtons, Buttons(QMessageBox::Ok));
}

void TstMessageBox::theRefusalHasTheTextGiven()
{
    QVERIFY(TVLMessageBox::isProjectContents(u"/a/b.tavel"_s, nullptr, QString(), u"Not here."_s));
    QCOMPARE(mBoxes->boxes().constFirst().title, QString());
    QCOMPARE(mBoxes->boxes().constFirst().informativeText, u"Not here."_s);
}

// --- A check

void TstMessageBox::aCheckStandsBeforeTheButtons()
{
    QMessageBox box(QMessageBox::Question, u"Title"_s, u"Text"_s,
                    QMessageBox::Yes | QMessageBox::No);
    box.setDefaultButton(QMessageBox::Yes);
    auto *buttons = box.findChild<QDialogButtonBox *>();
    buttons->setCenterButtons(true);
    bool isSeen = false;
    look([&](QMessageBox * /*shown*/) {
        const QLayoutItem *first = buttons->layout()->itemAt(0);
        const auto *check = qobject_cast<QCheckBox *>(first->widget());
        isSeen = check && check->isVisible() && check->text() == u"Don't ask again"_s
            && !buttons->centerButtons();
    });
    bool checked = false;
    QCOMPARE(TVLMessageBox::execCheckedMessageBox(&box, u"Don't ask again"_s, &checked),
             QMessageBox::Yes);
    QVERIFY(isSeen);
    QCOMPARE(mBoxes->boxes().constFirst().standardButtons, QMessageBox::Yes | QMessageBox::No);
}

void TstMessageBox::aCheckKeepsItsValue_data()
{
    QTest::addColumn<bool>("before");
    QTest::addColumn<bool>("isClicked");
    QTest::newRow("set") << true << false;
    QTest::newRow("not set") << false << false;
    QTest::newRow("set by the user") << false << true;
    QTest::newRow("taken away by the user") << true << true;
}

void TstMessageBox::aCheckKeepsItsValue()
{
    QFETCH(const bool, before);
    QFETCH(const bool, isClicked);
    bool shown = !before;
    look([&](QMessageBox *box) {
        auto *check = box->findChild<QCheckBox *>();
        shown = check->isChecked();
        if (isClicked)
            check->click();
    });
    QMessageBox box;
    bool checked = before;
    TVLMessageBox::execCheckedMessageBox(&box, u"Check"_s, &checked);
    QCOMPARE(shown, before);
    QCOMPARE(checked, before != isClicked);
}

void TstMessageBox::aBoxWithoutButtonsGetsOneForItsCheck()
{
    QMessageBox box;
    bool checked = false;
    QCOMPARE(TVLMessageBox::execCheckedMessageBox(&box, u"Check"_s, &checked), QMessageBox::Ok);
    QCOMPARE(mBoxes->boxes().constFirst().standardButtons, Buttons(QMessageBox::Ok));
}

void TstMessageBox::withoutAValueThereIsNoCheck()
{
    QMessageBox box(QMessageBox::Question, u"Title"_s, u"Text"_s, QMessageBox::Retry);
    QCOMPARE(TVLMessageBox::execCheckedMessageBox(&box, u"Check"_s, nullptr), QMessageBox::Retry);
    QCOMPARE(box.findChildren<QCheckBox *>().size(), 0);
}

// --- A box of any content

void TstMessageBox::aGeneralBoxHasWhatIsGiven()
{
    QCOMPARE(TVLMessageBox::showMessageBox(
                 nullptr, u"Title"_s, u"Text"_s, u"More"_s, QMessageBox::Information,
                 QMessageBox::Retry | QMessageBox::Ignore, QMessageBox::Ignore),
             QMessageBox::Ignore);
    const Box box = mBoxes->boxes().constFirst();
    QCOMPARE(box.title, u"Title"_s);
    QCOMPARE(box.text, u"Text"_s);
    QCOMPARE(box.informativeText, u"More"_s);
    QCOMPARE(box.icon, QMessageBox::Information);
    QCOMPARE(box.standardButtons, QMessageBox::Retry | QMessageBox::Ignore);
}

void TstMessageBox::aGeneralBoxLeavesOutWhatIsEmpty()
{
    TVLMessageBox::showMessageBox(nullptr, QString(), QString(), QString(), QMessageBox::NoIcon);
    const Box box = mBoxes->boxes().constFirst();
    QCOMPARE(box.title + box.text + box.informativeText, QString());
    QCOMPARE(box.icon, QMessageBox::NoIcon);
    QCOMPARE(box.standardButtons, Buttons(QMessageBox::Ok));
}

void TstMessageBox::aGeneralBoxIsWide()
{
    QSize size;
    Qt::Orientations expanding;
    int width = 0;
    look([&](QMessageBox *box) {
        if (QSpacerItem *spacer = lastSpacer(box)) {
            size = spacer->sizeHint();
            expanding = spacer->expandingDirections();
        }
        width = box->width();
    });
    TVLMessageBox::showMessageBox(nullptr, u"Title"_s, u"Text"_s, QString(), QMessageBox::Warning);
    QCOMPARE(size.width(), 500);
    QVERIFY(expanding.testFlag(Qt::Horizontal));
    QVERIFY2(width >= 500, qPrintable(QString::number(width)));
}

void TstMessageBox::aGeneralBoxMayHaveACheck()
{
    bool isNarrow = false;
    look([&](QMessageBox *box) {
        box->findChild<QCheckBox *>()->click();
        isNarrow = !lastSpacer(box);
    });
    bool checked = false;
    QCOMPARE(TVLMessageBox::showMessageBox(
                 nullptr, u"Title"_s, u"Text"_s, u"More"_s, QMessageBox::Question,
                 QMessageBox::Yes | QMessageBox::No, QMessageBox::No, u"Always"_s, &checked),
             QMessageBox::No);
    QVERIFY(checked);
    QVERIFY(isNarrow);
}

void TstMessageBox::aBoxIsModalOverItsParent()
{
    QWidget window;
    const QWidget *parent = nullptr;
    bool isModal = false;
    look([&](QMessageBox *box) {
        parent = box->parentWidget();
        isModal = box->isModal();
    });
    TVLMessageBox::couldNotOpen(&window, TVLMessageBox::FileEntity, u"/a"_s);
    QCOMPARE(parent, &window);
    QVERIFY(isModal);
    QVERIFY(window.findChildren<QMessageBox *>().isEmpty());
}

void TstMessageBox::aBoxThatGoesWithItsParentIsCancelled()
{
    auto *window = new QWidget;
    look([window](QMessageBox * /*box*/) { delete window; });
    bool checked = true;
    QCOMPARE(TVLMessageBox::showMessageBox(window, u"Title"_s, u"Text"_s, QString(),
                                           QMessageBox::Warning, QMessageBox::Ok, QMessageBox::Ok,
                                           u"Check"_s, &checked),
             QMessageBox::Cancel);
    QVERIFY(checked);
}

TVL_TEST(TstMessageBox)
#include "tst_messagebox.moc"
