#include "app/preparation_dialog.h"

#include "analysis/input_settings.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace kelmo {

cPreparationDialog::cPreparationDialog(eModule ofModule, cSettingFields& settingFields,
                                       QWidget* parent)
    : QDialog(parent), module(ofModule), fields(settingFields) {
    setObjectName(QStringLiteral("preparationDialog_") +
                  QString::fromUtf8(nameOf(module).data(), 3));
    setWindowTitle(tr("Preparation"));
    auto* const column = new QVBoxLayout(this);
    auto* const intent = new QLabel(
        tr("What of each file is analysed. By default everything that stands in its ATOM records "
           "is, as it stands; the log says what is not."));
    intent->setWordWrap(true);
    column->addWidget(intent);
    auto* const form = new QFormLayout;
    column->addLayout(form);
    fields.addMissing(*form, eSettingGroup::input);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    const QPushButton* const asIs = buttons->addButton(tr("As &is"), QDialogButtonBox::ResetRole);
    const QPushButton* const standard =
        buttons->addButton(tr("S&tandard"), QDialogButtonBox::ActionRole);
    connect(asIs, &QPushButton::clicked, this, [this] { take("as-is"); });
    connect(standard, &QPushButton::clicked, this, [this] { take("standard"); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::accept);
    column->addWidget(buttons);
}

cSettings cPreparationDialog::chosen() const {
    cSettings settings(module);
    fields.read(settings);
    return settings;
}

void cPreparationDialog::take(const std::string& value) {
    cSettings settings = chosen();
    settings.set("prepare", value);
    for (const sSetting& setting : inputSettings()) {
        fields.show(settings, setting.key);
    }
}

QString cPreparationDialog::summary() const {
    const sReadOptions options = readOptionsOf(chosen());
    if (options == sReadOptions{}) {
        return tr("Taken as they are");
    }
    return options == sReadOptions{.preparation = standardPreparation} ? tr("Standard preparation")
                                                                       : tr("Own preparation");
}

QString cPreparationDialog::details() const {
    const cSettings settings = chosen();
    const std::vector<sSetting> rows = inputSettings();
    QStringList lines;
    for (const std::string& key : settings.statedKeys()) {
        const auto row = std::ranges::find(rows, key, &sSetting::key);
        if (row != rows.end()) {
            lines.append(QString::fromStdString(row->title + ": " + settings.valueText(key)));
        }
    }
    return lines.join(u'\n');
}

} // namespace kelmo
