#include "trading/orders/OrderUpdate.h"

#include "trading/orders/BasketOrderIds.h"

namespace wicker {

namespace {

void CopyRecord(OrderUpdate& o, const QVXOrderStruct& r) {
    o.m_strAccount = r.Account;
    o.m_strAction = r.Action;
    o.m_strBatchId = r.BatchId;
    o.m_strDestination = r.Destination;
    o.m_strExchClOrderId = r.ExchClOrderId;
    o.m_strExchOrderId = r.ExchOrderId;
    o.m_strExecBroker = r.ExecBroker;
    o.m_strExecInst = r.ExecInst;
    // The platforms report the traded symbol in Symbol; Instrument only when they have one.
    o.m_strInstrument = r.Instrument.empty() ? r.Symbol : r.Instrument;
    o.m_strLogMessage = r.LogMessage;
    o.m_strOrderTime = r.OrderTime;
    o.m_strPairId = r.PairId;
    o.m_strPriceType = r.PriceType;
    o.m_strSide = r.Side;
    o.m_fTrailInc = r.TrailInc;
    o.m_strSorPreference = r.SorPreference;
    o.m_strStrategy = r.Strategy;
    o.m_strStartTime = r.StartTime;
    o.m_strEndTime = r.EndTime;
    o.m_strTif = r.Tif;
    o.m_strUpdateTime = r.UpdateTime;
    o.m_strUser = r.User;
    o.m_strUserId = r.UserId;
    o.m_fAvgExecPrice = r.AvgExecPrice;
    o.m_fAvgPriceLmt = r.AvgPriceLmt;
    o.m_fCashComponent = r.CashComponent;
    o.m_fDiscretion = r.Discretion;
    o.m_fExecPriceLmt = r.ExecPriceLmt;
    o.m_fLmtPrice = r.LmtPrice;
    o.m_fMaxHighPctDeviation = r.MaxHighPctDeviation;
    o.m_fMaxLowPctDeviation = r.MaxLowPctDeviation;
    o.m_fPctPerSlice = r.PctPerSlice;
    o.m_fPegDiff = r.PegDiff;
    o.m_fPremium = r.Premium;
    o.m_fRatio = r.Ratio;
    o.m_fReactPrice = r.ReactPrice;
    o.m_fStpPrice = r.StpPrice;
    o.m_fTargetPctVolume = r.TargetPctVolume;
    o.m_fTargetPrice = r.TargetPrice;
    o.m_fTilt = r.Tilt;
    o.m_fTrailAmt = r.TrailAmt;
    o.m_fUrStpdPrice = r.UrStpdPrice;
    o.m_nSeqNum = r.SeqNum;
    o.m_nAuction = r.Auction;
    o.m_nCumExecQuantity = r.CumExecQuantity;
    o.m_nDbsNo = r.DbsNo;
    o.m_nDisplay = r.Display;
    o.m_nDuration = r.Duration;
    o.m_nExecAggression = r.ExecAggression;
    o.m_nLvsQuantity = r.LvsQuantity;
    o.m_nMarketStructure = r.MarketStructure;
    o.m_nMaxPctVolume = r.MaxPctVolume;
    o.m_nMinPctVolume = r.MinPctVolume;
    o.m_nMinQuantity = r.MinQuantity;
    o.m_nOrderCompletion = r.OrderCompletion;
    o.m_nOrderRecordId = r.OrderRecordId;
    o.m_nOrderStatus = r.OrderStatus;
    o.m_nPingInterval = r.PingInterval;
    o.m_nPriceTolerance = r.PriceTolerance;
    o.m_nPriceType = r.PriceTypeCode;
    o.m_nQuantity = r.Quantity;
    o.m_nQtyTolerancePct = r.QtyTolerancePct;
    o.m_nQtyToleranceSize = r.QtyToleranceSize;
    o.m_nRefresh = r.Refresh;
    o.m_nRefreshInterval = r.RefreshInterval;
    o.m_nSeqNo = r.SeqNo;
    o.m_nSizeLow = r.SizeLow;
    o.m_nSizeMax = r.SizeMax;
    o.m_nTrailId = r.TrailId;
    o.m_bMoo = r.Moo;
    o.m_bMoc = r.Moc;
    o.m_bOpportunisticTrade = r.OpportunisticTrade;
    o.m_bSvrStpReleased = r.SvrStpReleased;
    o.m_bTakeLiquidity = r.TakeLiquidity;
}

} // namespace

void OrderUpdate::SetAllMembers(const OrderUpdate& other) {
    m_strAccount = other.m_strAccount;
    m_strAction = other.m_strAction;
    m_strBatchId = other.m_strBatchId;
    m_strDestination = other.m_strDestination;
    m_strExchClOrderId = other.m_strExchClOrderId;
    m_strExchOrderId = other.m_strExchOrderId;
    m_strExecBroker = other.m_strExecBroker;
    m_strExecInst = other.m_strExecInst;
    m_strInstrument = other.m_strInstrument;
    m_strLogMessage = other.m_strLogMessage;
    m_strOrderTime = other.m_strOrderTime;
    m_strPairId = other.m_strPairId;
    m_strPriceType = other.m_strPriceType;
    m_strSide = other.m_strSide;
    m_fTrailInc = other.m_fTrailInc;
    m_strSorPreference = other.m_strSorPreference;
    m_strStrategy = other.m_strStrategy;
    m_strStartTime = other.m_strStartTime;
    m_strEndTime = other.m_strEndTime;
    m_strTif = other.m_strTif;
    m_strUpdateTime = other.m_strUpdateTime;
    m_strUser = other.m_strUser;
    m_strUserId = other.m_strUserId;
    m_fAvgExecPrice = other.m_fAvgExecPrice;
    m_fAvgPriceLmt = other.m_fAvgPriceLmt;
    m_fCashComponent = other.m_fCashComponent;
    m_fDiscretion = other.m_fDiscretion;
    m_fExecPriceLmt = other.m_fExecPriceLmt;
    m_fLmtPrice = other.m_fLmtPrice;
    m_fMaxHighPctDeviation = other.m_fMaxHighPctDeviation;
    m_fMaxLowPctDeviation = other.m_fMaxLowPctDeviation;
    m_fPctPerSlice = other.m_fPctPerSlice;
    m_fPegDiff = other.m_fPegDiff;
    m_fPremium = other.m_fPremium;
    m_fRatio = other.m_fRatio;
    m_fReactPrice = other.m_fReactPrice;
    m_fStpPrice = other.m_fStpPrice;
    m_fTargetPctVolume = other.m_fTargetPctVolume;
    m_fTargetPrice = other.m_fTargetPrice;
    m_fTilt = other.m_fTilt;
    m_fTrailAmt = other.m_fTrailAmt;
    m_fUrStpdPrice = other.m_fUrStpdPrice;
    m_nSeqNum = other.m_nSeqNum;
    m_nAuction = other.m_nAuction;
    m_nCumExecQuantity = other.m_nCumExecQuantity;
    m_nDbsNo = other.m_nDbsNo;
    m_nDisplay = other.m_nDisplay;
    m_nDuration = other.m_nDuration;
    m_nExecAggression = other.m_nExecAggression;
    m_nLvsQuantity = other.m_nLvsQuantity;
    m_nMarketStructure = other.m_nMarketStructure;
    m_nMaxPctVolume = other.m_nMaxPctVolume;
    m_nMinPctVolume = other.m_nMinPctVolume;
    m_nMinQuantity = other.m_nMinQuantity;
    m_nOrderCompletion = other.m_nOrderCompletion;
    m_nOrderRecordId = other.m_nOrderRecordId;
    m_nOrderStatus = other.m_nOrderStatus;
    m_nPingInterval = other.m_nPingInterval;
    m_nPriceTolerance = other.m_nPriceTolerance;
    m_nPriceType = other.m_nPriceType;
    m_nQuantity = other.m_nQuantity;
    m_nQtyTolerancePct = other.m_nQtyTolerancePct;
    m_nQtyToleranceSize = other.m_nQtyToleranceSize;
    m_nRefresh = other.m_nRefresh;
    m_nRefreshInterval = other.m_nRefreshInterval;
    m_nSeqNo = other.m_nSeqNo;
    m_nSizeLow = other.m_nSizeLow;
    m_nSizeMax = other.m_nSizeMax;
    m_nTrailId = other.m_nTrailId;
    m_bMoo = other.m_bMoo;
    m_bMoc = other.m_bMoc;
    m_bOpportunisticTrade = other.m_bOpportunisticTrade;
    m_bSvrStpReleased = other.m_bSvrStpReleased;
    m_bTakeLiquidity = other.m_bTakeLiquidity;
    m_strBasketId = other.m_strBasketId;
    m_nBasketSeq = other.m_nBasketSeq;
    m_strClOrderId = other.m_strClOrderId;
}

void OrderUpdate::UpdateOrder(const QVXOrderStruct& structUpdate, bool bNewOrder) {
    if (bNewOrder) {
        const auto basket = ParseBasketMemo(structUpdate.Memo);
        if (!basket) {
            return;
        }
        m_strBasketId = basket->basketId;
        m_nBasketSeq = basket->basketSeq;
        m_strClOrderId = structUpdate.ClOrderID;
    }
    CopyRecord(*this, structUpdate);
}

} // namespace wicker
