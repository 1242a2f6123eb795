#include "HeifPointers.h"

#include <libheif/heif.h>

void HeifDeleter::operator()(heif_color_profile_nclx *profile) const {
    heif_nclx_color_profile_free(profile);
}

void HeifDeleter::operator()(heif_context *context) const {
    heif_context_free(context);
}

void HeifDeleter::operator()(heif_decoding_options *options) const {
    heif_decoding_options_free(options);
}

void HeifDeleter::operator()(heif_image *image) const {
    heif_image_release(image);
}

void HeifDeleter::operator()(heif_image_handle *handle) const {
    heif_image_handle_release(handle);
}
