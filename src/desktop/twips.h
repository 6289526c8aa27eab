#pragma once

#include <QRect>

#include "controls/form.h"

namespace velgrove {

constexpr float TwipsPerPixel = 15;

inline int pixels(float twips) {
  return qRound(twips / TwipsPerPixel);
}
inline float twips(int pixels) {
  return static_cast<float>(pixels) * TwipsPerPixel;
}

/// Where a form stands, in pixels.
inline QRect placeOf(const Form& form) {
  return {pixels(form.Left), pixels(form.Top), pixels(form.Width), pixels(form.Height)};
}
inline void setPlace(Form& form, const QRect& place) {
  form.Left = twips(place.left());
  form.Top = twips(place.top());
  form.Width = twips(place.width());
  form.Height = twips(place.height());
}

}  // namespace velgrove
