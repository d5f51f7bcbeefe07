#include "shortcut/KeycapField.h"

#include <QPainter>
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
    paintKeycaps(painter, keysInWords(*record, *layout_));
  } else if (!isEditing()) {
    paintHint(painter);
  }
}

/// Not the style's own frame, which can be the colour of the window where contrast is high.
void KeycapField::paintFrame(QPainter& painter) const {
  QColor edge = palette().color(isEditing() ? QPalette::Highlight : QPalette::Text);
  if (!isEditing()) edge.setAlphaF(kEdgeOpacity);
  painter.setPen(QPen(edge, isEditing() ? 2 : 1));
  painter.setBrush(palette().brush(QPalette::Base));
  painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), kFrameRadius, kFrameRadius);
}

/// From left to right also where text runs the other way, as the keys are pressed.
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

}  // namespace seldial
