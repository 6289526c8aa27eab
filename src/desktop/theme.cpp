#include "desktop/theme.h"

#include <QApplication>
#include <QFile>
#include <QFontDatabase>
#include <QIconEngine>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QRegularExpression>
#include <QStyle>
#include <QSvgRenderer>
#include <QVariant>
#include <algorithm>
#include <array>
#include <map>

/// The room is a static library, whose resources nobody else would load. Outside of any namespace, as the
/// toolkit wants it.
static void loadResources() {
  Q_INIT_RESOURCE(desktop);
}

namespace velgrove::theme {
namespace {

/// The colour of the lines in the icon files.
constexpr const char* IconLines = "#ECE7DD";
/// And of the warning, which the banner writes in its own ink.
constexpr const char* IconWarning = "#FFB443";
/// Their accents stand for colours of the palette.
constexpr std::array Accents{std::pair("#4FDDAA", "nextText"), std::pair("#FF8A7D", "stageText"),
                             std::pair(IconWarning, "warn")};

QByteArray resource(const QString& name) {
  QFile file(":/" + name);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

using Tokens = std::map<std::string, QColor, std::less<>>;

Tokens readPalette(const QString& file) {
  loadResources();
  Tokens read;
  const QJsonObject palette = QJsonDocument::fromJson(resource(file)).object();
  for (auto token = palette.begin(); token != palette.end(); ++token)
    read[token.key().toStdString()] = QColor(token.value().toString());
  return read;
}

Tone tone = Tone::Usual;

const Tokens& tokens() {
  static const Tokens usual = readPalette("palette.json");
  static const Tokens dim = readPalette("palette_dim.json");
  return tone == Tone::Dim ? dim : usual;
}

/// "@name/30" is the colour at 30 per cent.
QString withThinColours(QString sheet) {
  static const QRegularExpression thin(R"(@(\w+)/(\d+))");
  for (auto found = thin.match(sheet); found.hasMatch(); found = thin.match(sheet)) {
    const QColor whole = colour(found.captured(1).toUtf8());
    sheet.replace(found.capturedStart(), found.capturedLength(),
                  QString("rgba(%1, %2, %3, %4%)")
                      .arg(whole.red())
                      .arg(whole.green())
                      .arg(whole.blue())
                      .arg(found.captured(2)));
  }
  return sheet;
}

/// Longest names first, so that "@text" doesn't eat the head of "@text2".
QString withColours(QString sheet) {
  sheet = withThinColours(std::move(sheet));
  std::vector<std::string> names;
  for (const auto& [name, colour] : tokens()) names.push_back(name);
  std::ranges::sort(names, std::greater<>(), &std::string::size);
  for (const std::string& name : names)
    sheet.replace("@" + QString::fromStdString(name), colour(name.c_str()).name());
  return sheet;
}

/// Sizes are written "14|16px": for the compact and for the roomy desk.
QString withSizes(QString sheet, Density density) {
  static const QRegularExpression pair(R"((\d+)\|(\d+)px)");
  return sheet.replace(pair, density == Density::Compact ? R"(\1px)" : R"(\2px)");
}

/// A style sheet names its pictures by file, in the colours that they have there.
QString withPictures(QString sheet) {
  return tone == Tone::Dim ? sheet.replace("arrow_down.svg", "arrow_down_dim.svg") : sheet;
}

QString sheet(Density density) {
  const QString all = QString::fromUtf8(resource("velgrove.qss") + resource("desk.qss"));
  return withColours(withPictures(withSizes(all, density)));
}

std::optional<Density> applied;

QPalette palette() {
  QPalette p;
  p.setColor(QPalette::Window, colour("panel"));
  p.setColor(QPalette::Base, colour("well"));
  p.setColor(QPalette::AlternateBase, colour("window"));
  p.setColor(QPalette::Button, colour("raised"));
  p.setColor(QPalette::Text, colour("text"));
  p.setColor(QPalette::WindowText, colour("text"));
  p.setColor(QPalette::ButtonText, colour("text"));
  p.setColor(QPalette::PlaceholderText, colour("text3"));
  p.setColor(QPalette::ToolTipBase, colour("raised"));
  p.setColor(QPalette::ToolTipText, colour("text"));
  p.setColor(QPalette::Highlight, colour("hover"));
  p.setColor(QPalette::HighlightedText, colour("text"));
  p.setColor(QPalette::Link, colour("nextText"));
  for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
    p.setColor(QPalette::Disabled, role, colour("disabled"));
  return p;
}

/// Nothing hears what happens while it stands.
class Hush : public QObject {
 public:
  Hush() { qApp->installEventFilter(this); }

 protected:
  bool eventFilter(QObject*, QEvent*) override { return true; }
};

/// A sheet in the place of another one dresses a widget once for each that it stands in, six times on the
/// average: half a second of a busy machine. Where there is none at all, each is dressed once. What the
/// widgets look like in between concerns nobody.
void dress(Density density) {
  {
    const Hush hush;
    qApp->setStyleSheet(QString());
  }
  QApplication::setPalette(palette());
  QApplication::setFont(font(density == Density::Compact ? 14 : 16));
  qApp->setStyleSheet(sheet(density));
}

QFont face(const char* family, int pixels, bool bold) {
  QFont made{QString(family)};
  made.setPixelSize(pixels);
  made.setBold(bold);
  return made;
}

/// Draws an icon file at whatever size it is asked for, greyed when disabled.
class SvgIcon : public QIconEngine {
 public:
  explicit SvgIcon(QString name) : m_name(std::move(name)) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const qreal ratio = painter->device()->devicePixelRatioF();
    painter->drawPixmap(rect.topLeft(), drawn(rect.width(), mode, ratio));
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
    return drawn(size.width(), mode, 1.0);
  }
  QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State, qreal scale) override {
    return drawn(qRound(size.width() / scale), mode, scale);
  }
  [[nodiscard]] QIconEngine* clone() const override { return new SvgIcon(m_name); }

 private:
  [[nodiscard]] QPixmap drawn(int size, QIcon::Mode mode, qreal ratio) const {
    return picture(m_name, size, colour(mode == QIcon::Disabled ? "disabled" : "text"), ratio);
  }

  QString m_name;
};

}  // namespace

QColor colour(const char* token) {
  const auto found = tokens().find(std::string_view(token));
  if (found == tokens().end()) qFatal("no colour is called %s", token);
  return found->second;
}

Density density() {
  return applied.value_or(Density::Compact);
}

void apply(Density density) {
  if (applied == density) return;
  applied = density;
  dress(density);
}

void apply(Tone wanted) {
  if (std::exchange(tone, wanted) == wanted) return;
  dress(density());
}

QFont font(int pixels, bool bold) {
  return face("Roboto", pixels, bold);
}

QFont condensed(int pixels, bool bold) {
  return face("Roboto Condensed", pixels, bold);
}

QPixmap picture(const QString& name, int size, const QColor& lines, qreal pixelRatio) {
  const QString key = QString("%1/%2/%3/%4/%5")
                          .arg(name)
                          .arg(size)
                          .arg(lines.name())
                          .arg(pixelRatio)
                          .arg(static_cast<int>(tone));
  QPixmap made;
  if (QPixmapCache::find(key, &made)) return made;
  made = QPixmap(QSize(size, size) * pixelRatio);
  made.fill(Qt::transparent);
  QByteArray svg = resource("icons/" + name + ".svg");
  svg.replace(IconLines, lines.name().toUtf8());
  if (name == "mark_warning") svg.replace(IconWarning, lines.name().toUtf8());
  for (const auto& [accent, token] : Accents) svg.replace(accent, colour(token).name().toUtf8());
  QPainter painter(&made);
  QSvgRenderer(svg).render(&painter);
  painter.end();
  made.setDevicePixelRatio(pixelRatio);
  QPixmapCache::insert(key, made);
  return made;
}

QIcon icon(const QString& name) {
  return QFile::exists(":/icons/" + name + ".svg") ? QIcon(new SvgIcon(name)) : QIcon();
}
QIcon icon(const char* name) {
  return icon(QString(name));
}

QColor ofLevelText(Colour value) {
  switch (value) {
    case 255:
      return colour("manual");
    case 65535:
      return colour("queue");
    case 16744703:
      return colour("sub");
    case 16711680:
      return colour("blind");
    case 0x00FF00:
      return colour("picked");
    default:
      return colour("input");
  }
}

QColor ofFixture(Colour value) {
  switch (value) {
    case 0:
      return colour("well");
    case 0x00FF00:
      return colour("picked");
    case 0xFF0000:
      return colour("multi");
    case 0xFFFFFF:
      return colour("text");
    default:
      return colour("fixture");
  }
}

const char* keyOf(Colour value) {
  switch (value) {
    case 255:
      return "red";
    case 49152:
      return "green";
    case 65535:
      return "yellow";
    case 0xFF00FF:
      return "magenta";
    default:
      return "";
  }
}

void setState(QWidget* widget, const char* property, const QVariant& value) {
  if (widget->property(property) == value) return;
  widget->setProperty(property, value);
  widget->style()->unpolish(widget);
  widget->style()->polish(widget);
  widget->update();
}

}  // namespace velgrove::theme
