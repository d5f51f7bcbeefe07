#include "shortcut/Widgets.h"

#include <QAccessible>
#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>
#include <vector>

#include "shortcut/Shortcut.h"

namespace seldial {
namespace {

// In heights of the font.
constexpr qreal kCapHeight = 1.7;
constexpr qreal kCapPadding = 0.55;
constexpr qreal kGap = 0.4;
constexpr qreal kCapRadius = 0.25;

constexpr int kMargin = 8;
constexpr qreal kFrameRadius = 3;
constexpr float kEdgeOpacity = 0.45F;  // enough contrast in every theme

/// One keycap: a rounded frame with a thicker lower edge.
void paintCap(QPainter& painter, const QRectF& place, const QString& name,
              const QPalette& colours) {
  const qreal height = painter.fontMetrics().height();
  const qreal radius = kCapRadius * height;
  QColor edge = colours.color(QPalette::Text);
  edge.setAlphaF(kEdgeOpacity);
  painter.setPen(Qt::NoPen);
  painter.setBrush(edge);
  painter.drawRoundedRect(place, radius, radius);
  painter.setBrush(colours.brush(QPalette::Base));
  painter.drawRoundedRect(place.adjusted(1, 1, -1, -0.1 * height), radius, radius);
  painter.setPen(colours.color(QPalette::Text));
  painter.drawText(place.adjusted(0, 0, 0, -0.1 * height), Qt::AlignCenter, name);
}

constexpr qreal kRadius = 8;
constexpr int kPadding = 16;
constexpr int kLineGap = 4;
constexpr int kSignSize = 24;

/// A triangle with an exclamation mark, so that the warning does not depend on colour.
void paintWarningSign(QPainter& painter, const QRectF& place, const QColor& colour) {
  painter.setPen(QPen(colour, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  const QPointF corners[] = {{place.center().x(), place.top() + 2},
                             {place.right() - 1, place.bottom() - 2},
                             {place.left() + 1, place.bottom() - 2}};
  painter.drawPolygon(corners, 3);
  const qreal middle = place.center().x();
  painter.drawLine(QPointF(middle, place.top() + 9), QPointF(middle, place.top() + 14));
  painter.drawPoint(QPointF(middle, place.top() + 18));
}

}  // namespace

KeycapField::KeycapField(const platform::KeyboardPorts& keyboard, QWidget* parent)
    : QKHotKeyTextField(keyboard, parent), layout_(keyboard.layout) {}

void KeycapField::setHint(const QString& hint) {
  hint_ = hint;
  update();
}

void KeycapField::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  paintFrame(painter);
  if (const auto record = hotKey()) {
    paintKeycaps(painter, keyLabels(*record, *layout_));
  } else if (!isEditing()) {
    paintHint(painter);
  }
}

/// Not the frame of the style, which can have the colour of the window in a high contrast theme.
void KeycapField::paintFrame(QPainter& painter) const {
  QColor edge = palette().color(isEditing() ? QPalette::Highlight : QPalette::Text);
  if (!isEditing()) edge.setAlphaF(kEdgeOpacity);
  painter.setPen(QPen(edge, isEditing() ? 2 : 1));
  painter.setBrush(palette().brush(QPalette::Base));
  painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), kFrameRadius, kFrameRadius);
}

/// From left to right in right-to-left languages too, in the order in which the keys are pressed.
void KeycapField::paintKeycaps(QPainter& painter, const QStringList& names) const {
  const QFontMetricsF metrics(font());
  const qreal unit = metrics.height();
  std::vector<qreal> widths;
  qreal total = (static_cast<qreal>(names.size()) - 1) * kGap * unit;
  for (const QString& name : names) {
    const qreal width = metrics.horizontalAdvance(name) + 2 * kCapPadding * unit;
    widths.push_back(std::max(width, kCapHeight * unit));
    total += widths.back();
  }
  // A long name on a narrow field makes all of them smaller.
  const qreal scale = std::min(1.0, (width() - 2.0 * kMargin) / total);
  painter.translate(rect().center());
  painter.scale(scale, scale);
  painter.setFont(font());
  qreal left = -total / 2;
  for (qsizetype i = 0; i < names.size(); ++i) {
    const qreal width = widths[static_cast<std::size_t>(i)];
    paintCap(painter, {left, -kCapHeight * unit / 2, width, kCapHeight * unit}, names[i],
             palette());
    left += width + kGap * unit;
  }
}

void KeycapField::paintHint(QPainter& painter) const {
  QFont small = font();
  small.setPointSizeF(parentWidget()->font().pointSizeF());
  painter.setFont(small);
  QColor colour = palette().color(QPalette::Text);
  colour.setAlphaF(0.6F);  // a theme's colour for placeholders can be too faint
  painter.setPen(colour);
  painter.drawText(rect(), Qt::AlignCenter, hint_);
}

StatusPanel::StatusPanel(QWidget* parent)
    : QWidget(parent), headline_(new QLabel(this)), detail_(new QLabel(this)) {
  QFont bold = font();
  bold.setBold(true);
  headline_->setFont(bold);
  detail_->setWordWrap(true);
  for (auto* const label : {headline_, detail_}) label->setTextFormat(Qt::PlainText);
  auto* const texts = new QVBoxLayout(this);
  texts->setSpacing(kLineGap);
  texts->addStretch();
  texts->addWidget(headline_);
  texts->addWidget(detail_);
  texts->addStretch();
  // The other controls determine the width of the window.
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Minimum);
  setTextMargins();
  reserveHeight();
}

/// A layout mirrors its contents, but not its margins.
void StatusPanel::setTextMargins() {
  QMargins margins(kPadding, kPadding, kPadding, kPadding);
  const int signMargin = kPadding + kSignSize + kPadding;
  if (isRightToLeft()) {
    margins.setRight(signMargin);
  } else {
    margins.setLeft(signMargin);
  }
  layout()->setContentsMargins(margins);
}

void StatusPanel::setStatus(Kind kind, const QString& headline, const QString& detail) {
  const bool isNew = kind != kind_ || headline != headline_->text() || detail != detail_->text();
  kind_ = kind;
  headline_->setText(headline);
  detail_->setText(detail);
  colourTexts();
  reserveHeight();
  update();
  if (isNew) announce();
}

/// Reserves two lines below the headline, enough for most details, so that the window seldom
/// changes its size; more if necessary. The width is known only once the panel is shown.
void StatusPanel::reserveHeight() {
  const int usual = 2 * kPadding + 3 * fontMetrics().lineSpacing() + kLineGap;
  setMinimumHeight(isVisible() ? std::max(usual, layout()->heightForWidth(width())) : usual);
}

void StatusPanel::announce() {
  setAccessibleName(headline_->text());
  setAccessibleDescription(detail_->text());
  if (kind_ == Kind::kPlain) return;
  QAccessibleEvent event(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
}

void StatusPanel::colourTexts() {
  const auto role = kind_ == Kind::kLit ? QPalette::HighlightedText : QPalette::WindowText;
  for (auto* const label : {headline_, detail_}) label->setForegroundRole(role);
}

void StatusPanel::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) update();
  if (event->type() == QEvent::LayoutDirectionChange) setTextMargins();
}

void StatusPanel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QPalette& colours = palette();
  const bool isLit = kind_ == Kind::kLit;
  QColor edge = colours.color(QPalette::WindowText);
  if (kind_ == Kind::kPlain) edge.setAlphaF(0.25F);
  painter.setPen(isLit ? QPen(Qt::NoPen) : QPen(edge, kind_ == Kind::kWarning ? 2 : 1));
  painter.setBrush(colours.brush(isLit ? QPalette::Highlight : QPalette::Base));
  painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), kRadius, kRadius);
  const QRectF left(kPadding, (height() - kSignSize) / 2.0, kSignSize, kSignSize);
  const QRectF sign = QStyle::visualRect(layoutDirection(), rect(), left.toRect());
  if (kind_ == Kind::kWarning) {
    paintWarningSign(painter, sign, colours.color(QPalette::WindowText));
    return;
  }
  // A lamp: a ring, filled when it is lit.
  const QColor lamp = colours.color(isLit ? QPalette::HighlightedText : QPalette::WindowText);
  painter.setPen(QPen(lamp, 2));
  painter.setBrush(isLit ? QBrush(lamp) : QBrush(Qt::NoBrush));
  painter.setOpacity(isLit ? 1 : 0.5);
  painter.drawEllipse(sign.center(), kSignSize / 3.0, kSignSize / 3.0);
}

}  // namespace seldial
