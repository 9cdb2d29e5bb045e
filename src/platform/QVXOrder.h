#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace wicker {

/// The platform's order object: a send sets its properties in a fixed order, then calls
/// SubmitOrder. One object per order; every platform (simulated, FIX) makes its own. A
/// large send makes most of its orders on a helper thread while the first ones leave: an
/// order may be made and filled in on one thread and submitted on another, after it.
class QVXOrder {
public:
    virtual ~QVXOrder() = default;
    virtual std::string Account() const = 0;
    virtual void setAccount(std::string v) = 0;
    virtual std::string Side() const = 0;
    virtual void setSide(std::string v) = 0;
    virtual std::string Symbol() const = 0;
    virtual void setSymbol(std::string v) = 0;
    virtual int32_t Quantity() const = 0;
    virtual void setQuantity(int32_t v) = 0;
    virtual double LmtPrice() const = 0;
    virtual void setLmtPrice(double v) = 0;
    virtual int32_t PriceType() const = 0;
    virtual void setPriceType(int32_t v) = 0;
    virtual std::string ClOrderID() const = 0;
    virtual void setClOrderID(std::string v) = 0;
    virtual std::string Tif() const = 0;
    virtual void setTif(std::string v) = 0;
    virtual std::string Destination() const = 0;
    virtual void setDestination(std::string v) = 0;
    /// Signed result: 0 or more accepted, negative refused (see GetSubmitErrorStr).
    virtual int32_t SubmitOrder() = 0;
    virtual int32_t MaxFloor() const = 0;
    virtual void setMaxFloor(int32_t v) = 0;
    virtual std::string Memo() const = 0;
    virtual void setMemo(std::string v) = 0;
};

/// Makes a fresh order object for each line of a send; used by one thread at a time, which
/// need not be the one that submits the order.
class QVXOrderFactory {
public:
    virtual ~QVXOrderFactory() = default;
    virtual std::unique_ptr<QVXOrder> CreateOrder() = 0;
};

} // namespace wicker
