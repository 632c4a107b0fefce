#include "TVLMessageBox.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QPointer>
#include <QRegularExpression>
#include <QSpacerItem>

#include <algorithm>
#include <span>

using namespace Qt::StringLiterals;

namespace {

using Button = QMessageBox::StandardButton;
using Buttons = QMessageBox::StandardButtons;

/** What is said of an entity, with its name and its path in the places of %1. */
struct Message
{
    TVLMessageBox::Entity entity;
    const char *mainText;
    const char *informativeText;
};

constexpr Message OverwriteMessages[] = {
    {TVLMessageBox::ProjectEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Project '%1' already exists."),
     QT_TRANSLATE_NOOP("TVLMessageBox",
                       "The project at '%1' already exists. If you continue this project will be "
                       "overwritten. Continue?")},
    {TVLMessageBox::DirectoryEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Directory '%1' already exists."),
     QT_TRANSLATE_NOOP("TVLMessageBox",
                       "The directory at '%1' already exists. If you continue this directory will "
                       "be overwritten. Continue?")},
    {TVLMessageBox::FileEntity, QT_TRANSLATE_NOOP("TVLMessageBox", "File '%1' already exists."),
     QT_TRANSLATE_NOOP(
         "TVLMessageBox",
         "File at '%1' already exists. If you continue this file will be overwritten. Continue?")},
    {TVLMessageBox::CompileSettingsEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Compile Settings '%1' already exists. "),
     QT_TRANSLATE_NOOP("TVLMessageBox",
                       "Compile settings with the name '%1' already exists. If you continue these "
                       "settings will be overwritten. Continue?")},
    {TVLMessageBox::ExportedCompileSettingsEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Compile Settings '%1' already exists."),
     QT_TRANSLATE_NOOP("TVLMessageBox",
                       "Exported compile settings at '%1' already exists. If you continue these "
                       "settings will be overwritten. Continue?")},
    {TVLMessageBox::ApplicationSettingsEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Application Settings '%1' already exists."),
     QT_TRANSLATE_NOOP("TVLMessageBox",
                       "Application settings at '%1' already exists. If you continue these "
                       "settings will be overwritten. Continue?")},
    {TVLMessageBox::TemplateEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Template '%1' already exists."),
     QT_TRANSLATE_NOOP("TVLMessageBox",
                       "Template '%1' already exists. If you continue this template will be "
                       "overwritten. Continue?")},
};

constexpr Message RemoveMessages[] = {
    {TVLMessageBox::ProjectEntity, QT_TRANSLATE_NOOP("TVLMessageBox", "Remove project: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox", "Remove project at: %1")},
    {TVLMessageBox::DirectoryEntity, QT_TRANSLATE_NOOP("TVLMessageBox", "Remove directory: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox", "Remove directory at: %1")},
    {TVLMessageBox::FileEntity, QT_TRANSLATE_NOOP("TVLMessageBox", "Remove file: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox", "Remove file at: %1")},
    {TVLMessageBox::CompileSettingsEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Remove compile settings: %1"), nullptr},
    {TVLMessageBox::ExportedCompileSettingsEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Remove exported compile settings: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox", "Remove exported compile settings at: %1")},
    {TVLMessageBox::ApplicationSettingsEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Remove application settings: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox", "Remove application settings at: %1")},
    {TVLMessageBox::TemplateEntity, QT_TRANSLATE_NOOP("TVLMessageBox", "Remove template: %1"),
     nullptr},
};

constexpr Message ResetMessages[] = {
    {TVLMessageBox::CompileSettingsEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Reset compile settings to defaults?"),
     QT_TRANSLATE_NOOP("TVLMessageBox",
                       "This action will reset your settings to the default values and cannot be "
                       "undone. Continue?")},
    {TVLMessageBox::ApplicationSettingsEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Reset application settings to defaults?"),
     QT_TRANSLATE_NOOP("TVLMessageBox",
                       "This action will reset your settings to the default values and cannot be "
                       "undone. Continue?")},
};

constexpr Message CreateMessages[] = {
    {TVLMessageBox::ProjectEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not create project: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not create project at: %1")},
    {TVLMessageBox::DirectoryEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not create directory: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not create directory at: %1")},
    {TVLMessageBox::FileEntity, QT_TRANSLATE_NOOP("TVLMessageBox", "Could not create file: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not create file at: %1")},
};

constexpr Message OpenMessages[] = {
    {TVLMessageBox::ProjectEntity, QT_TRANSLATE_NOOP("TVLMessageBox", "Could not open project: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox", "File does not exist at: %1")},
    {TVLMessageBox::DirectoryEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not open directory: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not open directory at: %1")},
    {TVLMessageBox::FileEntity, QT_TRANSLATE_NOOP("TVLMessageBox", "Could not open file: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not open file at: %1")},
    {TVLMessageBox::CompileSettingsEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not open compile settings: %1"), nullptr},
    {TVLMessageBox::ExportedCompileSettingsEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not open exported compile settings: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not open exported compile settings at: %1")},
    {TVLMessageBox::ApplicationSettingsEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not open application settings: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not open application settings at: %1")},
    {TVLMessageBox::TemplateEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not open template: %1"), nullptr},
};

constexpr Message ReadMessages[] = {
    {TVLMessageBox::DirectoryEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not read directory: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not read directory at: %1")},
    {TVLMessageBox::FileEntity, QT_TRANSLATE_NOOP("TVLMessageBox", "Could not read file: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not read file at: %1")},
    {TVLMessageBox::CompileSettingsEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not read compile settings: %1"), nullptr},
    {TVLMessageBox::ExportedCompileSettingsEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not import compile settings: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not import compile settings at: %1")},
    {TVLMessageBox::ApplicationSettingsEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not read application settings: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not read application settings at: %1")},
    {TVLMessageBox::TemplateEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not read template: %1"), nullptr},
};

/** The text on a file is so written. */
constexpr Message NotRemovedMessages[] = {
    {TVLMessageBox::ProjectEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not remove project: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not remove project at: %1")},
    {TVLMessageBox::DirectoryEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not remove directory: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not remove directory at: %1")},
    {TVLMessageBox::FileEntity, QT_TRANSLATE_NOOP("TVLMessageBox", "Could not remove file: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could remove file at: %1")},
    {TVLMessageBox::CompileSettingsEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not remove compile settings: %1"), nullptr},
    {TVLMessageBox::ExportedCompileSettingsEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not remove exported compile settings: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not remove exported compile settings at: %1")},
    {TVLMessageBox::ApplicationSettingsEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not remove application settings: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not remove application settings at: %1")},
    {TVLMessageBox::TemplateEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not remove template: %1"), nullptr},
};

constexpr Message WriteMessages[] = {
    {TVLMessageBox::ProjectEntity, QT_TRANSLATE_NOOP("TVLMessageBox", "Could not save project: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox",
                       "Tavelinor does not allow saving to a project's .tavel folder.\n\nPlease "
                       "select another location.")},
    {TVLMessageBox::DirectoryEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not write to directory: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox",
                       "Could not write to directory at: %1\nPlease check the file is not in use "
                       "by any other applications.")},
    {TVLMessageBox::FileEntity, QT_TRANSLATE_NOOP("TVLMessageBox", "Could not save file: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox",
                       "Could not save file at: %1\nPlease check the file is not in use by any "
                       "other applications.")},
    {TVLMessageBox::CompileSettingsEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not save compile settings: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox",
                       "Please check the file is not in use by any other application.")},
    {TVLMessageBox::ExportedCompileSettingsEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not save export compile settings: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox",
                       "Please check the file is not in use by any other application.")},
    {TVLMessageBox::ApplicationSettingsEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not save application settings: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox",
                       "Please check the file is not in use by any other application.")},
    {TVLMessageBox::TemplateEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not save template: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox",
                       "Please check the file is not in use by any other application.")},
};

/** Where opening has other words than writing. */
constexpr Message OpenForWriteMessages[] = {
    {TVLMessageBox::DirectoryEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not write to directory: %1"),
     QT_TRANSLATE_NOOP("TVLMessageBox", "Could not write to the directory at: %1")},
};

constexpr Message IncompatibleMessages[] = {
    {TVLMessageBox::ProjectEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox",
                       "Project '%1' is incompatible with this version of Tavelinor."),
     QT_TRANSLATE_NOOP("TVLMessageBox",
                       "The project at '%1' is incompatible with this version of Tavelinor.")},
};

constexpr Message UpdateMessages[] = {
    {TVLMessageBox::ProjectEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "Project '%1' needs to be updated."),
     QT_TRANSLATE_NOOP(
         "TVLMessageBox",
         "The project at '%1' is from a previous version of Tavelinor and needs updating. Updating "
         "this project will make it incompatible with earlier versions of Tavelinor.")},
};

constexpr Message NewerMessages[] = {
    {TVLMessageBox::ProjectEntity,
     QT_TRANSLATE_NOOP("TVLMessageBox", "The project \"%1\" could not be opened."),
     QT_TRANSLATE_NOOP("TVLMessageBox",
                       "The project you are trying to open was created or saved using a newer "
                       "version of Tavelinor than the one you are currently using. You will need "
                       "to update Tavelinor to open this file.\n\nTry selecting \"Check for "
                       "Updates...\" from the Help menu to look for updates.")},
};

const Message *messageOf(std::span<const Message> messages, TVLMessageBox::Entity entity)
{
    const auto found =
        std::find_if(messages.begin(), messages.end(),
                     [entity](const Message &message) { return message.entity == entity; });
    return found == messages.end() ? nullptr : &*found;
}

QString shortName(TVLMessageBox::Entity entity, const QString &path)
{
    switch (entity) {
    case TVLMessageBox::ProjectEntity:
    case TVLMessageBox::DirectoryEntity:
        return QDir(path).dirName();
    case TVLMessageBox::FileEntity:
    case TVLMessageBox::ExportedCompileSettingsEntity:
    case TVLMessageBox::ApplicationSettingsEntity:
        return QFileInfo(path).fileName();
    case TVLMessageBox::CompileSettingsEntity:
    case TVLMessageBox::TemplateEntity:
        break;
    }
    return path;
}

/** Not every text has a place for the name. */
QString withName(const char *text, const QString &name)
{
    return text ? TVLMessageBox::tr(text).replace(u"%1"_s, name) : QString();
}

/** How a message is shown. */
struct Look
{
    QWidget *parent;
    Buttons buttons;
    Button defaultButton;
    QMessageBox::Icon icon = QMessageBox::Warning;
    QString title = {};
    QString error = {}; ///< Stands in place of the informative text.
};

Button showMessage(const Message *message, const QString &path, const Look &look)
{
    if (!message)
        return QMessageBox::Cancel;
    const QString informativeText =
        look.error.isEmpty() ? withName(message->informativeText, path) : look.error;
    return TVLMessageBox::showMessageBox(
        look.parent, look.title, withName(message->mainText, shortName(message->entity, path)),
        informativeText, look.icon, look.buttons, look.defaultButton);
}

/** The button that ends a box; Cancel when the box has gone with its parent. */
Button pressedButton(QMessageBox *box)
{
    const QPointer<QMessageBox> guarded(box);
    const int pressed = box->exec();
    return guarded ? Button(pressed) : QMessageBox::Cancel;
}

/** So that a short text doesn't make a narrow box. */
void addMinimumWidth(QMessageBox *box)
{
    constexpr int Width = 500;
    if (auto *grid = qobject_cast<QGridLayout *>(box->layout())) {
        // The plain expanding policy would let it shrink to nothing.
        grid->addItem(new QSpacerItem(Width, 0, QSizePolicy::MinimumExpanding), grid->rowCount(), 0,
                      1, grid->columnCount());
    }
}

/** A path may look like markup. */
void showTextsAsTheyStand(QMessageBox *box)
{
    box->setTextFormat(Qt::PlainText);
    const QList<QLabel *> labels = box->findChildren<QLabel *>();
    for (QLabel *label : labels)
        label->setTextFormat(Qt::PlainText);
}

} // namespace

Button TVLMessageBox::confirmOverwrite(QWidget *parent, Entity entity, const QString &path,
                                       Buttons buttons, Button defaultButton)
{
    return showMessage(messageOf(OverwriteMessages, entity), path,
                       {parent, buttons, defaultButton});
}

Button TVLMessageBox::confirmRemove(QWidget *parent, Entity entity, const QString &path,
                                    Buttons buttons, Button defaultButton)
{
    return showMessage(messageOf(RemoveMessages, entity), path, {parent, buttons, defaultButton});
}

Button TVLMessageBox::confirmReset(QWidget *parent, Entity entity, Buttons buttons,
                                   Button defaultButton)
{
    return showMessage(messageOf(ResetMessages, entity), QString(),
                       {parent, buttons, defaultButton, Question});
}

Button TVLMessageBox::entityNeedsUpdating(QWidget *parent, Entity entity, const QString &path,
                                          Buttons buttons, Button defaultButton)
{
    return showMessage(messageOf(UpdateMessages, entity), path, {parent, buttons, defaultButton});
}

Button TVLMessageBox::couldNotCreate(QWidget *parent, Entity entity, const QString &path,
                                     Buttons buttons, Button defaultButton)
{
    return showMessage(messageOf(CreateMessages, entity), path, {parent, buttons, defaultButton});
}

Button TVLMessageBox::couldNotOpen(QWidget *parent, Entity entity, const QString &path,
                                   Buttons buttons, Button defaultButton)
{
    return showMessage(messageOf(OpenMessages, entity), path, {parent, buttons, defaultButton});
}

Button TVLMessageBox::couldNotRead(QWidget *parent, Entity entity, const QString &path,
                                   Buttons buttons, Button defaultButton)
{
    return showMessage(messageOf(ReadMessages, entity), path, {parent, buttons, defaultButton});
}

Button TVLMessageBox::couldNotRemove(QWidget *parent, Entity entity, const QString &path,
                                     Buttons buttons, Button defaultButton)
{
    return showMessage(messageOf(NotRemovedMessages, entity), path,
                       {parent, buttons, defaultButton});
}

Button TVLMessageBox::couldNotOpenForWrite(QWidget *parent, Entity entity, const QString &path,
                                           const QString &error, Buttons buttons,
                                           Button defaultButton)
{
    const Message *message = messageOf(OpenForWriteMessages, entity);
    return showMessage(message ? message : messageOf(WriteMessages, entity), path,
                       {parent, buttons, defaultButton, Warning, QString(), error});
}

Button TVLMessageBox::couldNotWrite(QWidget *parent, Entity entity, const QString &path,
                                    const QString &title, const QString &error, Buttons buttons,
                                    Button defaultButton)
{
    return showMessage(messageOf(WriteMessages, entity), path,
                       {parent, buttons, defaultButton, Warning, title, error});
}

Button TVLMessageBox::incompatible(QWidget *parent, Entity entity, const QString &path,
                                   Buttons buttons, Button defaultButton)
{
    return showMessage(messageOf(IncompatibleMessages, entity), path,
                       {parent, buttons, defaultButton});
}

Button TVLMessageBox::tavelinorNeedsUpdating(QWidget *parent, const QString &path)
{
    return showMessage(messageOf(NewerMessages, ProjectEntity), path, {parent, Ok, Ok});
}

bool TVLMessageBox::isProjectContents(const QString &path, QWidget *parent, const QString &title,
                                      const QString &text)
{
    // A letter of any language makes it another name.
    static const QRegularExpression projectFolder(
        u"\\.tavel\\b"_s,
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    if (!projectFolder.match(path).hasMatch())
        return false;
    const QString advice =
        tr("Tavelinor does not allow exports or backups to be saved to a project's .tavel "
           "folder.\n\nPlease select another location.");
    showMessageBox(parent, title, tr("Cannot save to a project's folder"),
                   text.isEmpty() ? advice : text, Critical, Ok, Ok);
    return true;
}

Button TVLMessageBox::execCheckedMessageBox(QMessageBox *box, const QString &checkText,
                                            bool *checked)
{
    auto *buttons = box->findChild<QDialogButtonBox *>();
    if (!buttons || !checked)
        return pressedButton(box);
    if (buttons->buttons().isEmpty())
        box->setStandardButtons(Ok);
    // Before the check is there, because this lays out all buttons anew and would leave it out.
    buttons->setCenterButtons(false);
    const QPointer<QCheckBox> check = new QCheckBox(checkText, buttons);
    check->setChecked(*checked);
    if (auto *layout = qobject_cast<QBoxLayout *>(buttons->layout()))
        layout->insertWidget(0, check);
    const Button pressed = pressedButton(box);
    if (check)
        *checked = check->isChecked();
    return pressed;
}

Button TVLMessageBox::showMessageBox(QWidget *parent, const QString &title, const QString &text,
                                     const QString &informativeText, QMessageBox::Icon icon,
                                     Buttons buttons, Button defaultButton,
                                     const QString &checkText, bool *checked)
{
    // Its parent may be destroyed, and takes it along, before it is answered.
    const QPointer<QMessageBox> box = new TVLMessageBox(parent);
    if (!title.isEmpty())
        box->setWindowTitle(title);
    if (!text.isEmpty())
        box->setText(text);
    if (!informativeText.isEmpty())
        box->setInformativeText(informativeText);
    box->setIcon(icon);
    box->setStandardButtons(buttons);
    box->setDefaultButton(defaultButton);
    showTextsAsTheyStand(box);

    if (checkText.isEmpty())
        addMinimumWidth(box);
    const Button pressed =
        checkText.isEmpty() ? pressedButton(box) : execCheckedMessageBox(box, checkText, checked);
    delete box;
    return pressed;
}
