#pragma once

#include <QImage>

/// Blurs an Alpha8 image in place about as a Gaussian of the given standard deviation, in pixels, would.
namespace AlphaBlur {

void apply(QImage &mask, double sigma);

} // namespace AlphaBlur
