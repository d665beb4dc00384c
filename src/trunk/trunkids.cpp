#include "trunk/trunkids.h"

#include "core/text.h"

namespace kestra {

namespace {

bool startsWithI(std::string_view text) { return !text.empty() && (text[0] == 'i' || text[0] == 'I'); }

// The value of a piece of an ID: its leading number, 0 where it has none.
double piece(std::string_view text, std::size_t start, std::size_t length) { return Val(Mid(text, start, length)); }

// Characters start..start+length-1 (from 1) of r replaced by `with`, where r has them.
void putPiece(std::string& r, std::size_t start, std::string_view with)
{
    if (r.size() < start) return;
    r.replace(start - 1, std::min(with.size(), r.size() - start + 1), with);
}

// An "i" ICALL: "i" and zeros to six characters for 2..5 characters, else as
// typed; five digits above `limit` become zeros.
std::string icall(std::string_view text, double limit)
{
    std::string r(text);
    if (r.size() >= 2 && r.size() <= 5) r = "i" + std::string(6 - r.size(), '0') + r.substr(1);
    if (r.size() >= 2 && piece(r, 2, 5) > limit) putPiece(r, 2, std::string(std::min<std::size_t>(5, r.size() - 1), '0'));
    return r;
}

} // namespace

std::string normtype1(std::string_view text)
{
    if (Val(text) > 65536) return "0";
    if (startsWithI(text)) return icall(text, 65536);
    return std::string(text);
}

std::string normtype2(std::string_view text)
{
    const double value = Val(text);
    if (value > 765535 || (value > 65535 && value < 700000)) return "0";
    std::string r = trim(text).substr(0, 6);
    // A short ID that begins with 7 is a plain ID, not an ICALL.
    if (!r.empty() && r[0] == '7' && r.size() <= 4) r.insert(0, "0");
    if (!r.empty() && (startsWithI(r) || r[0] == '7')) {
        if (r.size() >= 2 && r.size() <= 5) r = "7" + std::string(6 - r.size(), '0') + r.substr(1);
        if (r.size() >= 2 && piece(r, 2, 5) > 65535) putPiece(r, 2, std::string(std::min<std::size_t>(5, r.size() - 1), '0'));
        r[0] = '7';
    } else if (!r.empty() && r.size() <= 5) {
        r.insert(0, 6 - r.size(), '0');
    }
    return r;
}

std::string normedacs(std::string_view text)
{
    if (startsWithI(text)) return icall(text, 16383);
    std::string r(text);
    if (const std::size_t dash = InStr(r, "-"); dash > 0) {
        if (dash > 4) return {};
        if (dash == 4) r.erase(0, 1);
        else if (dash == 2) r.insert(0, "0");
        else if (dash == 1) r.insert(0, "00");
        if (piece(r, 1, 2) > 15) putPiece(r, 1, "15");
        r = r.substr(0, 6);
        if (r.size() == 4) r.insert(3, "0");   // 12-3 is 12-03
        if (piece(r, 4, 2) > 15) putPiece(r, 4, "15");
        if (piece(r, 6, 1) > 7) putPiece(r, 6, "7");
        if (r == "00----") r.clear();   // the scanner's empty AFS
        return r;
    }
    // A decimal ID.
    const double value = Val(r);
    if (value > 2047 || value == 0) return "0";
    return r;
}

std::string normlt(std::string_view text)
{
    if (Val(text) == 0) return "0";
    std::string r(text.substr(0, std::min<std::size_t>(6, text.size())));
    static const char* const pads[] = {"", "00100", "0010", "001", "00", "0"};
    if (r.size() >= 1 && r.size() <= 5) r.insert(0, pads[r.size()]);
    if (r.size() == 6) {
        // Each step sees the result of the one before.
        if (piece(r, 1, 1) > 1) putPiece(r, 1, "1");
        if (piece(r, 2, 1) > 2) putPiece(r, 2, "2");
        if (piece(r, 2, 2) < 1) putPiece(r, 2, "01");
        if (piece(r, 2, 2) > 20) putPiece(r, 2, "20");
        if (piece(r, 4, 3) > 254) putPiece(r, 4, "254");
    }
    return r;
}

std::string normaliseId(int trunktype, std::string_view text)
{
    switch (trunktype) {
    case 2: return normtype1(text);
    case 1: case 3: case 4: case 5: return normtype2(text);
    case 6: case 7: return normedacs(text);
    case 8: return normlt(text);
    default: return std::string(text);
    }
}

std::string checkedId(int trunktype, std::string_view text)
{
    std::string id = trim(text);
    for (char& c : id)
        if (static_cast<unsigned char>(c) >= 128) c = ' ';
    id = trim(id);
    return id.empty() ? id : normaliseId(trunktype, id);
}

const char* trunkKindLabel(int trunktype)
{
    switch (trunktype) {
    case 1: case 3: case 4: case 5: return "Motorola Type 2";
    case 2: return "Motorola Type 1";
    case 6: case 7: case 9: return "Edacs";
    case 8: return "LT";
    default: return nullptr;
    }
}

const char* idFormatHint(int trunktype)
{
    switch (trunktype) {
    case 1: case 3: case 4: case 5: return "ID: 00000-65535     ICALL = 7----- OR i-----";
    case 2: return "ID: NNN-XX      ICALL = i-----";
    case 6: case 7: case 9:
        return "AFS: AA-FFS where  AA= Agency (00-15)  FF= Fleet (00-15)  S= Subfleet (0-7) or decimal (0-2047)  "
               "ICALL= i-----";
    case 8: return "AHHUUU where  A= Area Code (0-1)  HH= Home Repeater (01-20)  UUU = User ID (000-254)";
    default: return nullptr;
    }
}

std::string bankListCaption(const Document& doc, int bank)
{
    std::string caption = "Bank " + numText(bank + 1) + " - " + doc.banktags[bank];
    const int type = bankTrunkType(doc, bank);
    if (type >= 1 && type <= 5) caption += " - Mot.";
    else if (type == 6 || type == 7 || type == 9) caption += " - Edacs";
    else if (type == 8) caption += " - LT";
    return caption;
}

bool idKeyAccepted(int trunktype, char key)
{
    if (key == '-') return trunktype == 2 || trunktype == 6 || trunktype == 7;
    const auto code = static_cast<unsigned char>(key);
    return code < 26 || key == '.' || (key >= '0' && key <= '9') || key == 'i' || key == 'I';
}

bool tagKeyAccepted(char key)
{
    const auto code = static_cast<unsigned char>(key);
    return code >= 32 && code <= 126 && key != '"' && key != ',';
}

int storeRowOf(int editRow)
{
    return editRow % kIdsPerList == 0 ? editRow - kIdsPerList : editRow;
}

int editRowOf(int storeRow)
{
    return storeRow % kIdsPerList == 0 ? storeRow + kIdsPerList : storeRow;
}

std::string idRowLabel(int editRow)
{
    return numText((editRow - 1) / kIdsPerList + 1) + "-" + numText((editRow - 1) % kIdsPerList + 1);
}

std::string leftTag(std::string_view tag)
{
    return trim(tag.substr(0, std::min(tag.size(), kIdTagLength)));
}

std::string centerTag(std::string_view tag)
{
    return centerText(tag, kIdTagLength);
}

std::string storedIdTag(std::string_view tag)
{
    std::string out(tag.substr(0, std::min(tag.size(), kIdTagLength)));
    for (char& c : out)
        if (c == '"') c = ' ';
    return out;
}

} // namespace kestra
