#include "app/setting_fields.h"

#include "app/decimal_spin_box.h"
#include "run/file_path.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QSignalBlocker>

namespace kelmo {

namespace {

QString text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

void setUpNumber(QDoubleSpinBox& box, const sSetting& setting) {
    const QSignalBlocker noUserDidIt(box);
    box.setDecimals(setting.decimals);
    box.setRange(setting.smallestInForm(), setting.maximum);
    box.setSingleStep(setting.step);
    box.setValue(setting.defaultNumber());
}

QString labelOf(const sSetting& setting) {
    return text(setting.unit.empty() ? setting.title : setting.title + " (" + setting.unit + ')');
}

/// A field with the setting's default in it.
QWidget* newField(const sSetting& setting) {
    switch (setting.kind) {
    case eSettingKind::flag: {
        auto* box = new QCheckBox(text(setting.title));
        box->setChecked(setting.byDefault == "1");
        return box;
    }
    case eSettingKind::number:
        return new cDecimalSpinBox;
    case eSettingKind::choice: {
        auto* box = new QComboBox;
        for (const std::string& choice : setting.choices) {
            box->addItem(text(choice).replace(u'_', u' '), text(choice));
        }
        box->setCurrentIndex(box->findData(text(setting.byDefault)));
        return box;
    }
    case eSettingKind::word: {
        auto* edit = new QLineEdit;
        edit->setPlaceholderText(text(setting.byDefault));
        return edit;
    }
    case eSettingKind::table:
    case eSettingKind::directory:
    case eSettingKind::criterion:
        break;
    }
    return new QLineEdit;
}

} // namespace

void cSettingFields::bind(const std::string& key, QWidget* widget) {
    const sSetting& setting = *findSetting(module, key);
    widgets[key] = widget;
    widget->setToolTip(text(setting.help));
    if (auto* box = qobject_cast<QDoubleSpinBox*>(widget); box != nullptr) {
        setUpNumber(*box, setting);
    }
}

int cSettingFields::addMissing(QFormLayout& layout, std::optional<eSettingGroup> group) {
    int count = 0;
    for (const sSetting& setting : settingsOf(module)) {
        if (setting.kind == eSettingKind::criterion || widgets.contains(setting.key) ||
            setting.group != group.value_or(setting.group)) {
            continue;
        }
        QWidget* const field = newField(setting);
        field->setObjectName(text("setting_" + setting.key));
        bind(setting.key, field);
        if (setting.kind == eSettingKind::flag) {
            layout.addRow(field);
        } else {
            layout.addRow(labelOf(setting), field);
        }
        added.push_back(setting.key);
        ++count;
    }
    return count;
}

QWidget* cSettingFields::widget(const std::string& key) const {
    return widgets.at(key);
}

formField cSettingFields::field(const std::string& key) const {
    QWidget* const shown = widgets.at(key);
    if (auto* button = qobject_cast<QAbstractButton*>(shown); button != nullptr) {
        return button;
    }
    if (auto* box = qobject_cast<QDoubleSpinBox*>(shown); box != nullptr) {
        return box;
    }
    return qobject_cast<QLineEdit*>(shown);
}

void cSettingFields::read(cSettings& settings) const {
    for (const auto& [key, shown] : widgets) {
        if (const auto* button = qobject_cast<QAbstractButton*>(shown); button != nullptr) {
            settings.setFlag(key, button->isChecked());
        } else if (const auto* box = qobject_cast<QDoubleSpinBox*>(shown); box != nullptr) {
            settings.setNumber(key, box->value());
        } else if (const auto* choice = qobject_cast<QComboBox*>(shown); choice != nullptr) {
            settings.setText(key, choice->currentData().toString().toStdString());
        } else if (const auto* edit = qobject_cast<QLineEdit*>(shown); edit != nullptr) {
            const sSetting& setting = *findSetting(module, key);
            const bool isLeftEmpty = setting.kind == eSettingKind::word && edit->text().isEmpty();
            settings.setText(key, isLeftEmpty ? setting.byDefault : pathToBytes(edit->text()));
        }
    }
}

void cSettingFields::show(const cSettings& settings, const std::string& key) const {
    QWidget* const shown = widgets.at(key);
    if (auto* button = qobject_cast<QAbstractButton*>(shown); button != nullptr) {
        button->setChecked(settings.flag(key));
    } else if (auto* box = qobject_cast<QDoubleSpinBox*>(shown); box != nullptr) {
        box->setValue(settings.number(key));
    } else if (auto* choice = qobject_cast<QComboBox*>(shown); choice != nullptr) {
        choice->setCurrentIndex(choice->findData(text(settings.text(key))));
    } else if (auto* edit = qobject_cast<QLineEdit*>(shown); edit != nullptr) {
        const sSetting& setting = *findSetting(module, key);
        const bool isPlaceholder =
            setting.kind == eSettingKind::word && settings.text(key) == setting.byDefault;
        edit->setText(isPlaceholder ? QString() : pathFromBytes(settings.text(key)));
    }
}

} // namespace kelmo
