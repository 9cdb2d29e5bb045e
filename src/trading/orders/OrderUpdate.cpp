#include "trading/orders/OrderUpdate.h"

#include "trading/orders/BasketOrderIds.h"

namespace wicker {

namespace {

bool CarriesExtras(const QVXOrderStruct& r) {
    return !r.BatchId.empty() || !r.EndTime.empty() || !r.ExecBroker.empty() ||
           !r.ExecInst.empty() || !r.PairId.empty() || !r.SorPreference.empty() ||
           !r.StartTime.empty() || !r.Strategy.empty() || !r.User.empty() || !r.UserId.empty() ||
           r.TrailInc != 0 || r.AvgPriceLmt != 0 || r.CashComponent != 0 || r.Discretion != 0 ||
           r.MaxHighPctDeviation != 0 || r.MaxLowPctDeviation != 0 || r.PctPerSlice != 0 ||
           r.PegDiff != 0 || r.Premium != 0 || r.Ratio != 0 || r.ReactPrice != 0 ||
           r.StpPrice != 0 || r.TargetPctVolume != 0 || r.TargetPrice != 0 || r.Tilt != 0 ||
           r.TrailAmt != 0 || r.UrStpdPrice != 0 || r.Auction != 0 || r.DbsNo != 0 ||
           r.Duration != 0 || r.ExecAggression != 0 || r.MarketStructure != 0 ||
           r.MaxPctVolume != 0 || r.MinPctVolume != 0 || r.MinQuantity != 0 ||
           r.OrderCompletion != 0 || r.PingInterval != 0 || r.PriceTolerance != 0 ||
           r.QtyTolerancePct != 0 || r.QtyToleranceSize != 0 || r.Refresh != 0 ||
           r.RefreshInterval != 0 || r.SeqNo != 0 || r.SizeLow != 0 || r.SizeMax != 0 ||
           r.TrailId != 0 || r.OpportunisticTrade || r.SvrStpReleased || r.TakeLiquidity;
}

void CopyExtras(OrderExtras& e, const QVXOrderStruct& r) {
    e.m_strBatchId = r.BatchId;
    e.m_strEndTime = r.EndTime;
    e.m_strExecBroker = r.ExecBroker;
    e.m_strExecInst = r.ExecInst;
    e.m_strPairId = r.PairId;
    e.m_strSorPreference = r.SorPreference;
    e.m_strStartTime = r.StartTime;
    e.m_strStrategy = r.Strategy;
    e.m_strUser = r.User;
    e.m_strUserId = r.UserId;
    e.m_fTrailInc = r.TrailInc;
    e.m_fAvgPriceLmt = r.AvgPriceLmt;
    e.m_fCashComponent = r.CashComponent;
    e.m_fDiscretion = r.Discretion;
    e.m_fMaxHighPctDeviation = r.MaxHighPctDeviation;
    e.m_fMaxLowPctDeviation = r.MaxLowPctDeviation;
    e.m_fPctPerSlice = r.PctPerSlice;
    e.m_fPegDiff = r.PegDiff;
    e.m_fPremium = r.Premium;
    e.m_fRatio = r.Ratio;
    e.m_fReactPrice = r.ReactPrice;
    e.m_fStpPrice = r.StpPrice;
    e.m_fTargetPctVolume = r.TargetPctVolume;
    e.m_fTargetPrice = r.TargetPrice;
    e.m_fTilt = r.Tilt;
    e.m_fTrailAmt = r.TrailAmt;
    e.m_fUrStpdPrice = r.UrStpdPrice;
    e.m_nAuction = r.Auction;
    e.m_nDbsNo = r.DbsNo;
    e.m_nDuration = r.Duration;
    e.m_nExecAggression = r.ExecAggression;
    e.m_nMarketStructure = r.MarketStructure;
    e.m_nMaxPctVolume = r.MaxPctVolume;
    e.m_nMinPctVolume = r.MinPctVolume;
    e.m_nMinQuantity = r.MinQuantity;
    e.m_nOrderCompletion = r.OrderCompletion;
    e.m_nPingInterval = r.PingInterval;
    e.m_nPriceTolerance = r.PriceTolerance;
    e.m_nQtyTolerancePct = r.QtyTolerancePct;
    e.m_nQtyToleranceSize = r.QtyToleranceSize;
    e.m_nRefresh = r.Refresh;
    e.m_nRefreshInterval = r.RefreshInterval;
    e.m_nSeqNo = r.SeqNo;
    e.m_nSizeLow = r.SizeLow;
    e.m_nSizeMax = r.SizeMax;
    e.m_nTrailId = r.TrailId;
    e.m_bOpportunisticTrade = r.OpportunisticTrade;
    e.m_bSvrStpReleased = r.SvrStpReleased;
    e.m_bTakeLiquidity = r.TakeLiquidity;
}

/// Assigns only when the text changed: most reports repeat most texts.
void Keep(std::string& field, const std::string& value) {
    if (field != value) {
        field = value;
    }
}
void Keep(SharedText& field, const std::string& value, RecentTexts* recent) {
    if (field == value) {
        return;
    }
    if (recent != nullptr) {
        field = recent->of(value);
    } else {
        field = SharedText(value);
    }
}

void CopyRecord(OrderUpdate& o, const QVXOrderStruct& r, SharedOrderTexts* recent) {
    const auto in = [recent](RecentTexts SharedOrderTexts::*texts) {
        return recent != nullptr ? &(recent->*texts) : nullptr;
    };
    Keep(o.m_strAccount, r.Account, in(&SharedOrderTexts::account));
    Keep(o.m_strAction, r.Action, in(&SharedOrderTexts::action));
    Keep(o.m_strDestination, r.Destination, in(&SharedOrderTexts::destination));
    Keep(o.m_strExchClOrderId, r.ExchClOrderId, nullptr); // one per order, when any
    Keep(o.m_strExchOrderId, r.ExchOrderId);
    // The platforms report the traded symbol in Symbol; Instrument only when they have one.
    Keep(o.m_strInstrument, r.Instrument.empty() ? r.Symbol : r.Instrument);
    Keep(o.m_strLogMessage, r.LogMessage, in(&SharedOrderTexts::logMessage));
    Keep(o.m_strOrderTime, r.OrderTime, in(&SharedOrderTexts::orderTime));
    Keep(o.m_strPriceType, r.PriceType, in(&SharedOrderTexts::priceType));
    Keep(o.m_strSide, r.Side, in(&SharedOrderTexts::side));
    Keep(o.m_strTif, r.Tif, in(&SharedOrderTexts::tif));
    Keep(o.m_strUpdateTime, r.UpdateTime, in(&SharedOrderTexts::updateTime));
    o.m_fAvgExecPrice = r.AvgExecPrice;
    o.m_fExecPriceLmt = r.ExecPriceLmt;
    o.m_fLmtPrice = r.LmtPrice;
    o.m_nSeqNum = r.SeqNum;
    o.m_nCumExecQuantity = r.CumExecQuantity;
    o.m_nDisplay = r.Display;
    o.m_nLvsQuantity = r.LvsQuantity;
    o.m_nOrderRecordId = r.OrderRecordId;
    o.m_nOrderStatus = r.OrderStatus;
    o.m_nPriceType = r.PriceTypeCode;
    o.m_nQuantity = r.Quantity;
    o.m_bMoo = r.Moo;
    o.m_bMoc = r.Moc;
}

} // namespace

OrderUpdate::OrderUpdate(const OrderUpdate& other) {
    SetAllMembers(other);
}

OrderUpdate& OrderUpdate::operator=(const OrderUpdate& other) {
    if (this != &other) {
        SetAllMembers(other);
    }
    return *this;
}

const OrderExtras& OrderUpdate::Extras() const {
    static const OrderExtras none;
    return m_extras ? *m_extras : none;
}

void OrderUpdate::SetAllMembers(const OrderUpdate& other) {
    m_extras = other.m_extras ? std::make_unique<OrderExtras>(*other.m_extras) : nullptr;
    m_strAccount = other.m_strAccount;
    m_strAction = other.m_strAction;
    m_strDestination = other.m_strDestination;
    m_strExchClOrderId = other.m_strExchClOrderId;
    m_strExchOrderId = other.m_strExchOrderId;
    m_strInstrument = other.m_strInstrument;
    m_strLogMessage = other.m_strLogMessage;
    m_strOrderTime = other.m_strOrderTime;
    m_strPriceType = other.m_strPriceType;
    m_strSide = other.m_strSide;
    m_strTif = other.m_strTif;
    m_strUpdateTime = other.m_strUpdateTime;
    m_fAvgExecPrice = other.m_fAvgExecPrice;
    m_fExecPriceLmt = other.m_fExecPriceLmt;
    m_fLmtPrice = other.m_fLmtPrice;
    m_nSeqNum = other.m_nSeqNum;
    m_nCumExecQuantity = other.m_nCumExecQuantity;
    m_nDisplay = other.m_nDisplay;
    m_nLvsQuantity = other.m_nLvsQuantity;
    m_nOrderRecordId = other.m_nOrderRecordId;
    m_nOrderStatus = other.m_nOrderStatus;
    m_nPriceType = other.m_nPriceType;
    m_nQuantity = other.m_nQuantity;
    m_bMoo = other.m_bMoo;
    m_bMoc = other.m_bMoc;
    m_strBasketId = other.m_strBasketId;
    m_nBasketSeq = other.m_nBasketSeq;
    m_strClOrderId = other.m_strClOrderId;
}

void OrderUpdate::UpdateOrder(const QVXOrderStruct& structUpdate, bool bNewOrder,
                              SharedOrderTexts* recent) {
    if (bNewOrder) {
        const auto basket = ParseBasketMemo(structUpdate.Memo);
        if (!basket) {
            return;
        }
        m_strBasketId = basket->basketId;
        m_nBasketSeq = basket->basketSeq;
        m_strClOrderId = structUpdate.ClOrderID;
    }
    CopyRecord(*this, structUpdate, recent);
    if (CarriesExtras(structUpdate)) {
        if (!m_extras) {
            m_extras = std::make_unique<OrderExtras>();
        }
        CopyExtras(*m_extras, structUpdate);
    } else {
        m_extras.reset();
    }
}

} // namespace wicker
