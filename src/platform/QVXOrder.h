#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace wicker {

/// The platform's order object: a send sets its properties in a fixed order, then calls
/// SubmitOrder. One object per order; every platform (simulated, FIX) makes its own. The
/// properties of an order may be set on another thread than the one that made and submits
/// it (one thread at a time): a large send fills its orders in on two threads at once.
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

/// Makes a fresh order object for each line of a send, on the thread that submits it.
class QVXOrderFactory {
public:
    virtual ~QVXOrderFactory() = default;
    virtual std::unique_ptr<QVXOrder> CreateOrder() = 0;
};

} // namespace wicker
