#pragma once

#include "common/SharedText.h"
#include "platform/QVXOrderStruct.h"

#include <cstdint>
#include <memory>
#include <string>

namespace wicker {

/// The fields of the platform's order record that no screen or rule of Wicker reads
/// (algorithm parameters and the like). Kept, as the record gave them, only for an order
/// whose reports carry any of them: most orders carry none.
struct OrderExtras {
    std::string m_strBatchId;
    std::string m_strEndTime;
    std::string m_strExecBroker;
    std::string m_strExecInst;
    std::string m_strPairId;
    std::string m_strSorPreference;
    std::string m_strStartTime;
    std::string m_strStrategy;
    std::string m_strUser;
    std::string m_strUserId;
    double m_fTrailInc = 0;
    double m_fAvgPriceLmt = 0;
    double m_fCashComponent = 0;
    double m_fDiscretion = 0;
    double m_fMaxHighPctDeviation = 0;
    double m_fMaxLowPctDeviation = 0;
    double m_fPctPerSlice = 0;
    double m_fPegDiff = 0;
    double m_fPremium = 0;
    double m_fRatio = 0;
    double m_fReactPrice = 0;
    double m_fStpPrice = 0;
    double m_fTargetPctVolume = 0;
    double m_fTargetPrice = 0;
    double m_fTilt = 0;
    double m_fTrailAmt = 0;
    double m_fUrStpdPrice = 0;
    int32_t m_nAuction = 0;
    int32_t m_nDbsNo = 0;
    int32_t m_nDuration = 0;
    int32_t m_nExecAggression = 0;
    int32_t m_nMarketStructure = 0;
    int32_t m_nMaxPctVolume = 0;
    int32_t m_nMinPctVolume = 0;
    int32_t m_nMinQuantity = 0;
    int32_t m_nOrderCompletion = 0;
    int32_t m_nPingInterval = 0;
    int32_t m_nPriceTolerance = 0;
    int32_t m_nQtyTolerancePct = 0;
    int32_t m_nQtyToleranceSize = 0;
    int32_t m_nRefresh = 0;
    int32_t m_nRefreshInterval = 0;
    int32_t m_nSeqNo = 0;
    int32_t m_nSizeLow = 0;
    int32_t m_nSizeMax = 0;
    int32_t m_nTrailId = 0;
    bool m_bOpportunisticTrade = false;
    bool m_bSvrStpReleased = false;
    bool m_bTakeLiquidity = false;

    bool operator==(const OrderExtras&) const = default;
};

/// The recent values of the texts many orders carry alike (account, status texts, times,
/// basket), so that orders tracked one after another hold one copy of each.
struct SharedOrderTexts {
    RecentTexts account;
    RecentTexts action;
    RecentTexts destination;
    RecentTexts logMessage;
    RecentTexts orderTime;
    RecentTexts priceType;
    RecentTexts side;
    RecentTexts tif;
    RecentTexts updateTime;
    RecentTexts basketId;
};

/// One basket order as the platform last reported it: a copy of every field of the
/// order-update record that Wicker keeps, plus the basket it belongs to, filled when the
/// order is first seen. Tens of thousands are kept a day: texts that repeat from order to
/// order are shared, and the rarely carried fields are kept apart.
class OrderUpdate {
public:
    SharedText m_strAccount;
    SharedText m_strAction;
    SharedText m_strDestination;
    SharedText m_strExchClOrderId;
    std::string m_strExchOrderId;
    std::string m_strInstrument;
    SharedText m_strLogMessage;
    SharedText m_strOrderTime;
    SharedText m_strPriceType;
    SharedText m_strSide;
    SharedText m_strTif;
    SharedText m_strUpdateTime;
    double m_fAvgExecPrice = 0;
    double m_fExecPriceLmt = 0;
    double m_fLmtPrice = 0;
    int32_t m_nSeqNum = 0;
    int32_t m_nCumExecQuantity = 0;
    int32_t m_nDisplay = 0;
    int32_t m_nLvsQuantity = 0;
    int32_t m_nOrderRecordId = 0;
    int32_t m_nOrderStatus = 0;
    int32_t m_nPriceType = 0;
    int32_t m_nQuantity = 0;
    bool m_bMoo = false;
    bool m_bMoc = false;
    /// Basket send number from the memo.
    int16_t m_nBasketSeq = 0;

    /// Basket id from the memo (name without dashes); empty for an order of no basket.
    SharedText m_strBasketId;
    /// Client order id as first reported; rejects find their order by it.
    std::string m_strClOrderId;

    OrderUpdate() = default;
    OrderUpdate(const OrderUpdate& other);
    OrderUpdate& operator=(const OrderUpdate& other);
    OrderUpdate(OrderUpdate&&) noexcept = default;
    OrderUpdate& operator=(OrderUpdate&&) noexcept = default;
    ~OrderUpdate() = default;

    /// The rarely carried fields; all at their defaults when the reports carried none.
    const OrderExtras& Extras() const;

    /// Copies every member, the basket members included, from another record.
    void SetAllMembers(const OrderUpdate& other);

    /// Takes the platform's record. For a new order (bNewOrder) it first decides from the
    /// memo whether the order belongs to a basket; if not, the basket id stays empty and
    /// nothing else is filled. A memo whose send number is not a number throws
    /// RuntimeError and leaves the object as it was. Texts that changed are taken from
    /// `recent` when given, so that they are shared with the orders updated before.
    void UpdateOrder(const QVXOrderStruct& structUpdate, bool bNewOrder,
                     SharedOrderTexts* recent = nullptr);

private:
    std::unique_ptr<OrderExtras> m_extras; ///< null while every extra field is at its default
};

// Two orders fill one block of the tracker's deque: a field more doubles its allocations.
static_assert(sizeof(OrderUpdate) <= 256);

} // namespace wicker
