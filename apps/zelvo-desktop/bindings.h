// Widgets bound to control models. Each binding shows the model's state now
// and again after every change it is told of, and turns what the person does
// into the model's User… calls, so the window's handlers run. The widgets
// keep no state of their own that the model does not have.
//
// A binding lives as long as its widget (it is parented to it) and stops
// observing the model when it goes.
#pragma once

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QTabWidget>
#include <QToolBar>

#include "platform/ui/combo_box.h"
#include "platform/ui/picture_box.h"
#include "platform/ui/simple_controls.h"
#include "platform/ui/tab_strip.h"
#include "platform/ui/toolbar.h"

namespace zelvo::desktop {

// One action a button, in the toolbar's order; a separator for a separator.
// Pressed buttons show checked.
void BindToolbar(QToolBar* bar, ui::Toolbar& model, Qt::ToolButtonStyle style = Qt::ToolButtonTextUnderIcon);
void BindTextBox(QLineEdit* edit, ui::TextBox& model);
void BindLabel(QLabel* label, ui::Label& model);
// A button without a caption shows its tooltip as its text.
void BindButton(QPushButton* button, ui::CommandButton& model);
void BindStatusBar(QStatusBar* bar, ui::StatusBar& model);
// The strip's tabs are the widget's pages, in order; the widget must have
// as many pages as the strip has tabs.
void BindTabs(QTabWidget* tabs, ui::TabStrip& model);
// An editable box: the model's list and text; a pick from the list and the
// person's typing go to the model as UserSelect and UserType.
void BindComboBox(QComboBox* box, ui::ComboBox& model);
// The picture a picture box shows (what was drawn on it, else its picture),
// as it stands when the window is made: a picture box tells no one of its
// changes. `none` is shown when it has no picture.
void ShowPictureBox(QLabel* label, const ui::PictureBox& model, const QString& none = {});

}  // namespace zelvo::desktop
