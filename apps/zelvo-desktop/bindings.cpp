#include "bindings.h"

#include <QAction>
#include <QImage>
#include <QPixmap>
#include <QSignalBlocker>
#include <algorithm>
#include <QPointer>

#include "icons.h"

namespace zelvo::desktop {

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

// Calls `refresh` now and after each change of `model`, while `owner` lives.
template <typename Model, typename F>
void Follow(QObject* owner, Model& model, F refresh) {
    refresh();
    int id = model.Observe(refresh);
    // The model outlives the window's widgets only for a moment at unload;
    // the widget stops observing when it goes.
    QObject::connect(owner, &QObject::destroyed, [&model, id] { model.Unobserve(id); });
}

}  // namespace

void BindToolbar(QToolBar* bar, ui::Toolbar& model, Qt::ToolButtonStyle style) {
    bar->setToolButtonStyle(style);
    std::vector<QAction*> actions;
    for (int i = 1; i <= model.Count(); ++i) {
        const ui::Button& b = model.Buttons(i);
        if (b.Style() == ui::tbrSeparator || b.Style() == ui::tbrPlaceholder) {
            actions.push_back(bar->addSeparator());
            continue;
        }
        QAction* action = bar->addAction(Q(b.Caption()));
        action->setObjectName(Q(b.Key()));
        std::string key = b.Key();
        // A click goes to the model, which decides the pressed states; the
        // action's own toggling is put back by the refresh that follows.
        QObject::connect(action, &QAction::triggered, bar, [&model, key] { model.UserClick(key); });
        actions.push_back(action);
    }
    QPointer<QToolBar> guard(bar);
    Follow(bar, model, [&model, actions, guard] {
        if (!guard) return;
        guard->setEnabled(model.Enabled());
        guard->setVisible(model.Visible());
        for (int i = 1; i <= model.Count(); ++i) {
            const ui::Button& b = model.Buttons(i);
            QAction* a = actions[static_cast<size_t>(i - 1)];
            if (a->isSeparator()) continue;
            bool checkable = b.Style() == ui::tbrCheck || b.Style() == ui::tbrButtonGroup || b.Value();
            a->setCheckable(checkable);
            a->setChecked(b.Value() != 0);
            a->setEnabled(b.Enabled());
            a->setVisible(b.Visible());
            // A button without a caption shows its tip, so it is never blank.
            a->setText(Q(b.Caption().empty() ? b.ToolTipText() : b.Caption()));
            a->setToolTip(Q(b.ToolTipText().empty() ? b.Caption() : b.ToolTipText()));
            a->setIcon(b.Image().IsText() ? IconForKey(b.Image().text()) : QIcon());
        }
    });
}

void BindTextBox(QLineEdit* edit, ui::TextBox& model) {
    QPointer<QLineEdit> guard(edit);
    Follow(edit, model, [&model, guard] {
        if (!guard) return;
        QString text = Q(model.Text());
        if (guard->text() != text) guard->setText(text);
        guard->setReadOnly(model.Locked());
        guard->setEnabled(model.Enabled());
        guard->setVisible(model.Visible());
        guard->setToolTip(Q(model.ToolTipText()));
    });
    QObject::connect(edit, &QLineEdit::textEdited, edit,
                     [&model](const QString& text) { model.UserType(text.toStdString()); });
}

void BindLabel(QLabel* label, ui::Label& model) {
    QPointer<QLabel> guard(label);
    Follow(label, model, [&model, guard] {
        if (!guard) return;
        guard->setText(Q(model.Caption()));
        guard->setEnabled(model.Enabled());
        guard->setVisible(model.Visible());
    });
}

void BindButton(QPushButton* button, ui::CommandButton& model) {
    QPointer<QPushButton> guard(button);
    Follow(button, model, [&model, guard] {
        if (!guard) return;
        guard->setText(Q(model.Caption().empty() ? model.ToolTipText() : model.Caption()));
        guard->setToolTip(Q(model.ToolTipText()));
        guard->setEnabled(model.Enabled());
        guard->setVisible(model.Visible());
        guard->setDefault(model.Default);
    });
    QObject::connect(button, &QPushButton::clicked, button, [&model] { model.UserClick(); });
}

void BindStatusBar(QStatusBar* bar, ui::StatusBar& model) {
    QPointer<QStatusBar> guard(bar);
    Follow(bar, model, [&model, guard] {
        if (!guard) return;
        guard->showMessage(Q(model.SimpleText()));
        guard->setVisible(model.Visible());
    });
}

void BindTabs(QTabWidget* tabs, ui::TabStrip& model) {
    QPointer<QTabWidget> guard(tabs);
    Follow(tabs, model, [&model, guard] {
        if (!guard) return;
        for (int i = 0; i < model.Tabs() && i < guard->count(); ++i) {
            guard->setTabText(i, Q(model.TabCaption(i)));
            guard->setTabEnabled(i, model.TabEnabled(i));
            guard->setTabVisible(i, model.TabVisible(i));
        }
        if (guard->currentIndex() != model.Tab()) guard->setCurrentIndex(model.Tab());
        guard->setEnabled(model.Enabled());
    });
    QObject::connect(tabs, &QTabWidget::currentChanged, tabs, [&model, guard](int index) {
        if (index < 0 || index == model.Tab()) return;
        // A page the model refuses goes back to the one it has.
        if (!model.UserSelect(index) && guard) guard->setCurrentIndex(model.Tab());
    });
}

void BindComboBox(QComboBox* box, ui::ComboBox& model) {
    box->setEditable(model.Style != ui::vbComboDropdownList);
    box->setInsertPolicy(QComboBox::NoInsert);
    QPointer<QComboBox> guard(box);
    Follow(box, model, [&model, guard] {
        if (!guard) return;
        QStringList items;
        for (int i = 0; i < model.ListCount(); ++i) items << Q(model.List(i));
        // The list is rebuilt while the person types in the box: the text
        // and the cursor stay where they are.
        QSignalBlocker block(guard);
        int cursor = guard->lineEdit() ? guard->lineEdit()->cursorPosition() : 0;
        QStringList shown;
        for (int i = 0; i < guard->count(); ++i) shown << guard->itemText(i);
        if (shown != items) {
            guard->clear();
            guard->addItems(items);
        }
        if (guard->isEditable()) {
            if (guard->currentText() != Q(model.Text())) guard->setEditText(Q(model.Text()));
            guard->lineEdit()->setCursorPosition(std::min(cursor, static_cast<int>(guard->currentText().size())));
        } else {
            guard->setCurrentIndex(model.ListIndex());
        }
        guard->setEnabled(model.Enabled());
        guard->setVisible(model.Visible());
        guard->setToolTip(Q(model.ToolTipText()));
    });
    QObject::connect(box, &QComboBox::activated, box, [&model](int index) { model.UserSelect(index); });
    if (box->lineEdit())
        QObject::connect(box->lineEdit(), &QLineEdit::textEdited, box,
                         [&model](const QString& text) { model.UserType(text.toStdString()); });
}

void ShowPictureBox(QLabel* label, const ui::PictureBox& model, const QString& none) {
    const auto& pic = model.Image ? model.Image : model.Picture;
    if (!pic || pic->Empty()) {
        label->setText(none);
        return;
    }
    QImage image(pic->Pixels.data(), pic->Width, pic->Height, pic->Width * 3, QImage::Format_RGB888);
    // The picture's pixels belong to the model: the label keeps a copy.
    label->setPixmap(QPixmap::fromImage(image.copy()));
}

}  // namespace zelvo::desktop
