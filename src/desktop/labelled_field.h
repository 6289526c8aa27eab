#pragma once

#include <QGridLayout>
#include <QLabel>

#include "desktop/binding.h"

namespace velgrove {

/// A short field with its label, a row of a dialog that asks for numbers.
struct LabelledField {
  QLabel label;
  Field field;

  void dress(const QString& labelName, const QString& fieldName, const QString& spoken) {
    label.setObjectName(labelName);
    label.setProperty("tone", "quiet");
    label.setBuddy(&field);
    field.setObjectName(fieldName);
    field.setAccessibleName(spoken);
    field.setToolTip(spoken);
  }
  void bind(Bindings& bindings, const Bindings::Find<Label>& findLabel,
            const Bindings::Find<TextBox>& findField) {
    bindings.bind(&label, findLabel);
    bindings.bind(&field, findField);
  }
  void addTo(QGridLayout& rows, int row, int width) {
    field.setFixedWidth(width);
    rows.addWidget(&label, row, 0);
    rows.addWidget(&field, row, 1, Qt::AlignRight);
    rows.setColumnStretch(0, 1);
  }
};

}  // namespace velgrove
