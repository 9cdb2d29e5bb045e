#include "storage/Settings.h"

#include "common/Conversions.h"
#include "common/Formats.h"
#include "common/RuntimeError.h"
#include "common/Text.h"
#include "storage/clsIniFile.h"

namespace wicker {
namespace {

// Reads keys the way the loader always did: a missing key reads its default, and a
// value that does not convert leaves the target as it was.
class Reader {
public:
    explicit Reader(clsIniFile& ini) : m_ini(ini) {}

    std::string text(const char* section, const char* key, const std::string& def) {
        m_ini.setSection(section);
        m_ini.setKey(key);
        m_ini.setDefault(def);
        return m_ini.Value();
    }
    void int16(const char* section, const char* key, const char* def, int16_t& target) {
        try {
            target = CInt(std::string_view(text(section, key, def)));
        } catch (const RuntimeError&) {
        }
    }
    void int32(const char* section, const char* key, const char* def, int32_t& target) {
        try {
            target = CLng(std::string_view(text(section, key, def)));
        } catch (const RuntimeError&) {
        }
    }

private:
    clsIniFile& m_ini;
};

void Write(clsIniFile& ini, const char* section, const char* key, const std::string& value) {
    ini.setSection(section);
    ini.setKey(key);
    ini.setValue(value);
}

std::string JoinPositions(const std::vector<std::string>& p) {
    std::string out;
    for (size_t i = 0; i < p.size(); ++i) {
        out += (i ? "," : "") + p[i];
    }
    return out;
}

} // namespace

std::string DefaultButtons(int16_t moo, int16_t moc) {
    if (moo == 1 && moc == 1) {
        return "111111111111111111000";
    }
    if (moo == 1 && moc == 0) {
        return "111110111110111110000";
    }
    if (moo == 0 && moc == 1) {
        return "111101111101111101000";
    }
    return "111100111100111100000";
}

std::string JoinBasketList(const std::vector<std::string>& basketOrder,
                           const std::function<std::string(const std::string&)>& valueOf) {
    std::string out;
    for (const auto& name : basketOrder) {
        out += name + "_" + valueOf(name) + ",";
    }
    return out;
}

std::map<std::string, std::string> SplitBasketList(const std::string& text) {
    std::map<std::string, std::string> out;
    for (const auto& entry : Split(text, ",")) {
        const size_t us = entry.rfind('_');
        if (us != std::string::npos && us > 0) {
            out.emplace(entry.substr(0, us), entry.substr(us + 1));
        }
    }
    return out;
}

Settings LoadSettings(const std::filesystem::path& appFolder, const Clock& clock,
                      const InstallHook& installHook) {
    Settings s;
    clsIniFile ini;
    Reader r(ini);
    ini.setPath(appFolder / "$QvxLast.ini");
    s.volThousands = r.text("General", "VolThousands", "");
    s.volThreshold = r.text("General", "VolThreshold", "");

    ini.setPath(appFolder / "basket.ini");
    for (const char* version : {"4010", "4011", "4013", "4016", "5010"}) {
        int16_t flag = 0;
        r.int16("Install", version, "0", flag);
        if (flag == 0) {
            if (installHook) {
                installHook(version);
            }
            flag = 1;
        }
        s.install[version] = flag;
    }
    for (size_t i = 0; i < s.stockColumnWidths.size(); ++i) {
        const std::string key = "column" + std::to_string(i + 1);
        const std::string v = r.text("StockColumnWidths", key.c_str(), "");
        if (!v.empty()) {
            s.stockColumnWidths[i] = clsIniFile::CLngDefault(v, 0);
        }
    }
    for (size_t i = 0; i < s.basketColumnWidths.size(); ++i) {
        const std::string key = "column" + std::to_string(i + 1);
        const std::string v = r.text("BasketColumnWidths", key.c_str(), "");
        if (!v.empty()) {
            s.basketColumnWidths[i] = clsIniFile::CLngDefault(v, 0);
        }
    }
    s.basketItemsCols = r.text("ColumnDisplay", "BasketItemsCols", s.basketItemsCols);
    s.basketInfoCols = r.text("ColumnDisplay", "BasketInfoCols", s.basketInfoCols);
    r.int16("OptionalButtons", "MOO", "0", s.moo);
    r.int16("OptionalButtons", "MOC", "0", s.moc);
    s.buttons = r.text("ButtonsDisplay", "Buttons", DefaultButtons(s.moo, s.moc));
    s.itemsPositions = Split(r.text("ColumnPositions", "ItemsPositions",
                                    "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,"),
                             ",");
    s.infoPositions =
        Split(r.text("ColumnPositions", "InfoPositions", "1,2,3,4,5,6,7,8,9,10,11,12,13"), ",");
    s.colorOrderButtons = r.text("Color", "ColorOrderButtons", "1");
    r.int32("Color", "BuyButtonColor", "-2147483633", s.buyButtonColor);
    r.int32("Color", "SellButtonColor", "-2147483633", s.sellButtonColor);
    r.int32("Color", "ShortButtonColor", "-2147483633", s.shortButtonColor);
    r.int16("Rounding", "ShareRounding", "1", s.shareRounding);
    s.beforeSending = r.text("Confirmation", "BeforeSending", "0");
    s.beforeCancel = r.text("Confirmation", "BeforeCancel", "0");
    s.beforeChange = r.text("Confirmation", "BeforeChange", "0");

    const std::string today = FormatYyyymmdd(clock.localNow());
    s.curDate = r.text("Sequence", "CurDate", "00000000");
    if (s.curDate != today) {
        Write(ini, "Sequence", "CurDate", today);
        Write(ini, "Sequence", "BasketNum", "1");
        s.curDate = today;
    }
    r.int16("Sequence", "SeqNum", "1", s.seqNum);
    r.int16("Sequence", "BasketNum", "1", s.basketNum);

    s.basketButtons = r.text("DisplaySettings", "BasketButtons", "1");
    s.basketInfoDisplay = r.text("BasketInfo", "Display", "1");
    s.basketInfoShowAll = r.text("BasketInfo", "ShowAll", "0");
    r.int32("Reserve", "Quantity", "100", s.reserveQuantity);
    s.reserveEnabled = r.text("Reserve", "Enabled", "0");
    r.int16("Decimals", "NumDecimals", "2", s.numDecimals);
    for (const auto& [name, value] : SplitBasketList(r.text("Divisors", "List", ""))) {
        if (IsNumeric(value)) {
            s.divisors[name] = CDbl(value);
        }
    }
    for (const auto& [name, value] : SplitBasketList(r.text("IndexTypes", "List", ""))) {
        s.indexTypes[name] = value;
    }
    return s;
}

void SaveScreenSettings(const std::filesystem::path& appFolder, const Settings& s,
                        const std::vector<std::string>& basketOrder) {
    clsIniFile ini;
    ini.setPath(appFolder / "basket.ini");
    Write(ini, "ColumnPositions", "ItemsPositions", JoinPositions(s.itemsPositions));
    Write(ini, "ColumnPositions", "InfoPositions", JoinPositions(s.infoPositions));
    Write(ini, "ButtonsDisplay", "Buttons", s.buttons);
    Write(ini, "ColumnDisplay", "BasketItemsCols", s.basketItemsCols);
    Write(ini, "ColumnDisplay", "BasketInfoCols", s.basketInfoCols);
    Write(ini, "Divisors", "List", JoinBasketList(basketOrder, [&](const std::string& n) {
              auto it = s.divisors.find(n);
              return NumberText(it == s.divisors.end() ? 1.0 : it->second);
          }));
    Write(ini, "IndexTypes", "List", JoinBasketList(basketOrder, [&](const std::string& n) {
              auto it = s.indexTypes.find(n);
              return it == s.indexTypes.end() ? std::string("Price Weighted") : it->second;
          }));
}

} // namespace wicker
