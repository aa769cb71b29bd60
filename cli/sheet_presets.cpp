// The presets sheet of `vok gallery`: every named preset at full strength.
#include "contact_sheet.h"
#include "vok/effects.h"

namespace vok_cli {
namespace {

std::vector<SheetTile> preset_tiles() {
    std::vector<SheetTile> tiles;
    for (uint32_t i = 0; TESKLegacyPresetName(i) != nullptr; ++i) {
        const std::string name = TESKLegacyPresetName(i);
        tiles.push_back(
            {name, [name](VokBitmap &bitmap) {
                 const std::string json =
                     R"({"identifier":"preset","processors":[{"name":"legacyProcessor",)"
                     R"("parameters":{"legacyName":")" +
                     name + R"("}}]})";
                 VokJsonValue effect = TESKLoadEffect(json.c_str());
                 VokEffectParams params;
                 VokEffectInitParams(&params);
                 params.seed = 7;
                 const int ok = effect != nullptr && TESKRunEffect(effect, &bitmap, &params);
                 TESKUnloadEffect(&effect);
                 return ok != 0;
             }});
    }
    return tiles;
}

}  // namespace

extern const GallerySheet presets_sheet = {"presets.png", "vok-lite presets", nullptr,
                                           preset_tiles};

}  // namespace vok_cli
