// AtmTrafficDescriptorClient: the traffic parameters that ATM connections share, handed out by
// VirtualConnectionTpClient::getTrafficDescriptor().
#pragma once

#include "clients/transmission/AtmPersistentObjectClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/Record.h"
#include "rmi/ResponseInfo.h"

#include <string>

// Holds the service category, the conformance definition and the traffic parameters of both directions. Each rate, loss
// ratio and tolerance has a value for all cells (Clp0_1) and one for the high-priority cells only (Clp0). Operations
// with a plain result return zero, false or an empty text when the call fails.
class AtmTrafficDescriptorClient : public AtmPersistentObjectClient {
public:
    using Parent = AtmPersistentObjectClient;
    using AtmPersistentObjectClient::AtmPersistentObjectClient;

    using ClientSpecificMetaObject = ProxyMetaObject<AtmTrafficDescriptorClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // Service categories.
    static constexpr int SC_CBR = 0;
    static constexpr int SC_RT_VBR = 1;
    static constexpr int SC_NRT_VBR = 2;
    static constexpr int SC_ABR = 3;
    static constexpr int SC_UBRDEGRADED = 4;
    // Conformance definitions.
    static constexpr int CD_CBR1 = 0;
    static constexpr int CD_VBR1 = 1;
    static constexpr int CD_VBR2 = 2;
    static constexpr int CD_VBR3 = 3;
    static constexpr int CD_UBR1 = 4;
    static constexpr int CD_UBR2 = 5;
    static constexpr int CD_ABR = 6;
    // The limits of the parameters, for callers: the proxy checks none.
    static constexpr int MAXIMUM_CELLRATE_IN_CELLS_PER_SEC = 1412828;
    static constexpr int MINIMUM_CELLRATE_IN_CELLS_PER_SEC = 0;
    static constexpr int MAXIMUM_CELL_LOSS_RATIO_EXPONENT = 9;
    static constexpr int MINIMUM_CELL_LOSS_RATIO_EXPONENT = 0;
    static constexpr int MAXIMUM_CELL_DELAY_VARIATION_IN_MICRO_SEC = 1000000000;
    static constexpr int MINIMUM_CELL_DELAY_VARIATION_IN_MICRO_SEC = 0;
    static constexpr int MAXIMUM_UBR_SHARE = 1000;
    static constexpr int MINIMUM_UBR_SHARE = 1;

    // All parameters of a descriptor, each named after the operation that reads it. Proxies only send it.
    struct InitValues {
        unsigned long serviceCat;                      // as setServiceCat()
        unsigned long conformanceDefinition;           // as setConformanceDefinition()
        unsigned long egressPeakCellRateClp0_1;        // as setEgressPeakCellRateClp0_1()
        unsigned long egressPeakCellRateClp0;          // as setEgressPeakCellRateClp0()
        unsigned long ingressPeakCellRateClp0_1;       // as setIngressPeakCellRateClp0_1()
        unsigned long ingressPeakCellRateClp0;         // as setIngressPeakCellRateClp0()
        unsigned long egressMinDesiredCellRateClp0_1;  // as setEgressMinDesiredCellRateClp0_1()
        unsigned long egressMinDesiredCellRateClp0;    // as setEgressMinDesiredCellRateClp0()
        unsigned long ingressMinDesiredCellRateClp0_1; // as setIngressMinDesiredCellRateClp0_1()
        unsigned long ingressMinDesiredCellRateClp0;   // as setIngressMinDesiredCellRateClp0()
        unsigned long egressClrClp0_1;                 // as setEgressClrClp0_1()
        unsigned long egressClrClp0;                   // as setEgressClrClp0()
        unsigned long ingressClrClp0_1;                // as setIngressClrClp0_1()
        unsigned long ingressClrClp0;                  // as setIngressClrClp0()
        unsigned long egressCdvTolerancePcrClp0_1;     // as setEgressCdvTolerancePcrClp0_1()
        unsigned long egressCdvTolerancePcrClp0;       // as setEgressCdvTolerancePcrClp0()
        unsigned long ingressCdvTolerancePcrClp0_1;    // as setIngressCdvTolerancePcrClp0_1()
        unsigned long ingressCdvTolerancePcrClp0;      // as setIngressCdvTolerancePcrClp0()
        unsigned long egressUbrShare;                  // as setEgressUbrShare()
        unsigned long ingressUbrShare;                 // as setIngressUbrShare()
        std::string userLabel;
        std::string nmaLabel;
    };

    // Reads the label that the user gave the descriptor.
    virtual std::string getUserLabel() const;
    // Sets the user label.
    virtual ResponseInfo<SetClient> setUserLabel(std::string const& label) const;
    // Reads the label for the network management agent (NMA).
    virtual std::string getNmaLabel() const;
    // Sets the NMA label.
    virtual ResponseInfo<SetClient> setNmaLabel(std::string const& label) const;
    // Reads the service category: an SC_ constant.
    virtual unsigned long getServiceCat() const;
    // Reads the conformance definition: a CD_ constant.
    virtual unsigned long getConformanceDefinition() const;
    // Reads the egress peak cell rate of all cells, in cells per second.
    virtual unsigned long getEgressPeakCellRateClp0_1() const;
    // Reads the egress peak cell rate of high-priority cells, in cells per second.
    virtual unsigned long getEgressPeakCellRateClp0() const;
    // Reads the ingress peak cell rate of all cells, in cells per second.
    virtual unsigned long getIngressPeakCellRateClp0_1() const;
    // Reads the ingress peak cell rate of high-priority cells, in cells per second.
    virtual unsigned long getIngressPeakCellRateClp0() const;
    // Reads the egress minimum desired cell rate of all cells, in cells per second.
    virtual unsigned long getEgressMinDesiredCellRateClp0_1() const;
    // Reads the egress minimum desired cell rate of high-priority cells, in cells per second.
    virtual unsigned long getEgressMinDesiredCellRateClp0() const;
    // Reads the ingress minimum desired cell rate of all cells, in cells per second.
    virtual unsigned long getIngressMinDesiredCellRateClp0_1() const;
    // Reads the ingress minimum desired cell rate of high-priority cells, in cells per second.
    virtual unsigned long getIngressMinDesiredCellRateClp0() const;
    // Reads the egress cell loss ratio exponent of all cells.
    virtual unsigned long getEgressClrClp0_1() const;
    // Reads the egress cell loss ratio exponent of high-priority cells.
    virtual unsigned long getEgressClrClp0() const;
    // Reads the ingress cell loss ratio exponent of all cells.
    virtual unsigned long getIngressClrClp0_1() const;
    // Reads the ingress cell loss ratio exponent of high-priority cells.
    virtual unsigned long getIngressClrClp0() const;
    // Reads the egress cell delay variation tolerance of the peak cell rate of all cells, in microseconds.
    virtual unsigned long getEgressCdvTolerancePcrClp0_1() const;
    // Reads the egress cell delay variation tolerance of the peak cell rate of high-priority cells, in microseconds.
    virtual unsigned long getEgressCdvTolerancePcrClp0() const;
    // Reads the ingress cell delay variation tolerance of the peak cell rate of all cells, in microseconds.
    virtual unsigned long getIngressCdvTolerancePcrClp0_1() const;
    // Reads the ingress cell delay variation tolerance of the peak cell rate of high-priority cells, in microseconds.
    virtual unsigned long getIngressCdvTolerancePcrClp0() const;
    // Reads the egress UBR share.
    virtual unsigned long getEgressUbrShare() const;
    // Reads the ingress UBR share.
    virtual unsigned long getIngressUbrShare() const;
    // Reads the previous egress minimum desired cell rate, in cells per second.
    virtual unsigned long getOldEgressMinDesiredCellRate() const;
    // Reads the previous ingress minimum desired cell rate, in cells per second.
    virtual unsigned long getOldIngressMinDesiredCellRate() const;
    // Sets the service category: an SC_ constant.
    virtual ResponseInfo<SetClient> setServiceCat(unsigned long const& category) const;
    // Sets the conformance definition: a CD_ constant.
    virtual ResponseInfo<SetClient> setConformanceDefinition(unsigned long const& definition) const;
    // Sets the egress peak cell rate of all cells, in cells per second:
    // MINIMUM_CELLRATE_IN_CELLS_PER_SEC..MAXIMUM_CELLRATE_IN_CELLS_PER_SEC.
    virtual ResponseInfo<SetClient> setEgressPeakCellRateClp0_1(unsigned long const& rate) const;
    // Sets the egress peak cell rate of high-priority cells, in cells per second:
    // MINIMUM_CELLRATE_IN_CELLS_PER_SEC..MAXIMUM_CELLRATE_IN_CELLS_PER_SEC.
    virtual ResponseInfo<SetClient> setEgressPeakCellRateClp0(unsigned long const& rate) const;
    // Sets the ingress peak cell rate of all cells, in cells per second:
    // MINIMUM_CELLRATE_IN_CELLS_PER_SEC..MAXIMUM_CELLRATE_IN_CELLS_PER_SEC.
    virtual ResponseInfo<SetClient> setIngressPeakCellRateClp0_1(unsigned long const& rate) const;
    // Sets the ingress peak cell rate of high-priority cells, in cells per second:
    // MINIMUM_CELLRATE_IN_CELLS_PER_SEC..MAXIMUM_CELLRATE_IN_CELLS_PER_SEC.
    virtual ResponseInfo<SetClient> setIngressPeakCellRateClp0(unsigned long const& rate) const;
    // Sets the egress minimum desired cell rate of all cells, in cells per second:
    // MINIMUM_CELLRATE_IN_CELLS_PER_SEC..MAXIMUM_CELLRATE_IN_CELLS_PER_SEC.
    virtual ResponseInfo<SetClient> setEgressMinDesiredCellRateClp0_1(unsigned long const& rate) const;
    // Sets the egress minimum desired cell rate of high-priority cells, in cells per second:
    // MINIMUM_CELLRATE_IN_CELLS_PER_SEC..MAXIMUM_CELLRATE_IN_CELLS_PER_SEC.
    virtual ResponseInfo<SetClient> setEgressMinDesiredCellRateClp0(unsigned long const& rate) const;
    // Sets the ingress minimum desired cell rate of all cells, in cells per second:
    // MINIMUM_CELLRATE_IN_CELLS_PER_SEC..MAXIMUM_CELLRATE_IN_CELLS_PER_SEC.
    virtual ResponseInfo<SetClient> setIngressMinDesiredCellRateClp0_1(unsigned long const& rate) const;
    // Sets the ingress minimum desired cell rate of high-priority cells, in cells per second:
    // MINIMUM_CELLRATE_IN_CELLS_PER_SEC..MAXIMUM_CELLRATE_IN_CELLS_PER_SEC.
    virtual ResponseInfo<SetClient> setIngressMinDesiredCellRateClp0(unsigned long const& rate) const;
    // Sets the egress cell loss ratio exponent of all cells:
    // MINIMUM_CELL_LOSS_RATIO_EXPONENT..MAXIMUM_CELL_LOSS_RATIO_EXPONENT.
    virtual ResponseInfo<SetClient> setEgressClrClp0_1(unsigned long const& exponent) const;
    // Sets the egress cell loss ratio exponent of high-priority cells:
    // MINIMUM_CELL_LOSS_RATIO_EXPONENT..MAXIMUM_CELL_LOSS_RATIO_EXPONENT.
    virtual ResponseInfo<SetClient> setEgressClrClp0(unsigned long const& exponent) const;
    // Sets the ingress cell loss ratio exponent of all cells:
    // MINIMUM_CELL_LOSS_RATIO_EXPONENT..MAXIMUM_CELL_LOSS_RATIO_EXPONENT.
    virtual ResponseInfo<SetClient> setIngressClrClp0_1(unsigned long const& exponent) const;
    // Sets the ingress cell loss ratio exponent of high-priority cells:
    // MINIMUM_CELL_LOSS_RATIO_EXPONENT..MAXIMUM_CELL_LOSS_RATIO_EXPONENT.
    virtual ResponseInfo<SetClient> setIngressClrClp0(unsigned long const& exponent) const;
    // Sets the egress cell delay variation tolerance of the peak cell rate of all cells, in microseconds:
    // MINIMUM_CELL_DELAY_VARIATION_IN_MICRO_SEC..MAXIMUM_CELL_DELAY_VARIATION_IN_MICRO_SEC.
    virtual ResponseInfo<SetClient> setEgressCdvTolerancePcrClp0_1(unsigned long const& tolerance) const;
    // Sets the egress cell delay variation tolerance of the peak cell rate of high-priority cells, in microseconds:
    // MINIMUM_CELL_DELAY_VARIATION_IN_MICRO_SEC..MAXIMUM_CELL_DELAY_VARIATION_IN_MICRO_SEC.
    virtual ResponseInfo<SetClient> setEgressCdvTolerancePcrClp0(unsigned long const& tolerance) const;
    // Sets the ingress cell delay variation tolerance of the peak cell rate of all cells, in microseconds:
    // MINIMUM_CELL_DELAY_VARIATION_IN_MICRO_SEC..MAXIMUM_CELL_DELAY_VARIATION_IN_MICRO_SEC.
    virtual ResponseInfo<SetClient> setIngressCdvTolerancePcrClp0_1(unsigned long const& tolerance) const;
    // Sets the ingress cell delay variation tolerance of the peak cell rate of high-priority cells, in microseconds:
    // MINIMUM_CELL_DELAY_VARIATION_IN_MICRO_SEC..MAXIMUM_CELL_DELAY_VARIATION_IN_MICRO_SEC.
    virtual ResponseInfo<SetClient> setIngressCdvTolerancePcrClp0(unsigned long const& tolerance) const;
    // Sets the egress UBR share: MINIMUM_UBR_SHARE..MAXIMUM_UBR_SHARE.
    virtual ResponseInfo<SetClient> setEgressUbrShare(unsigned long const& share) const;
    // Sets the ingress UBR share: MINIMUM_UBR_SHARE..MAXIMUM_UBR_SHARE.
    virtual ResponseInfo<SetClient> setIngressUbrShare(unsigned long const& share) const;
    // Adds a reference to the descriptor. The count that the server answers.
    virtual unsigned long internalAddReference() const;
    // Releases a reference to the descriptor. The count that the server answers.
    virtual unsigned long internalReleaseReference() const;
    // Keeps the current minimum desired cell rate (MDCR).
    virtual ResponseInfo<SetClient> keepCurrentMdcr() const;
    // Asks whether the descriptor's parameters equal the given ones.
    virtual bool isLike(InitValues const& values) const;
};

template <>
struct RecordFields<AtmTrafficDescriptorClient::InitValues>
    : Fields<&AtmTrafficDescriptorClient::InitValues::serviceCat,
             &AtmTrafficDescriptorClient::InitValues::conformanceDefinition,
             &AtmTrafficDescriptorClient::InitValues::egressPeakCellRateClp0_1,
             &AtmTrafficDescriptorClient::InitValues::egressPeakCellRateClp0,
             &AtmTrafficDescriptorClient::InitValues::ingressPeakCellRateClp0_1,
             &AtmTrafficDescriptorClient::InitValues::ingressPeakCellRateClp0,
             &AtmTrafficDescriptorClient::InitValues::egressMinDesiredCellRateClp0_1,
             &AtmTrafficDescriptorClient::InitValues::egressMinDesiredCellRateClp0,
             &AtmTrafficDescriptorClient::InitValues::ingressMinDesiredCellRateClp0_1,
             &AtmTrafficDescriptorClient::InitValues::ingressMinDesiredCellRateClp0,
             &AtmTrafficDescriptorClient::InitValues::egressClrClp0_1,
             &AtmTrafficDescriptorClient::InitValues::egressClrClp0,
             &AtmTrafficDescriptorClient::InitValues::ingressClrClp0_1,
             &AtmTrafficDescriptorClient::InitValues::ingressClrClp0,
             &AtmTrafficDescriptorClient::InitValues::egressCdvTolerancePcrClp0_1,
             &AtmTrafficDescriptorClient::InitValues::egressCdvTolerancePcrClp0,
             &AtmTrafficDescriptorClient::InitValues::ingressCdvTolerancePcrClp0_1,
             &AtmTrafficDescriptorClient::InitValues::ingressCdvTolerancePcrClp0,
             &AtmTrafficDescriptorClient::InitValues::egressUbrShare,
             &AtmTrafficDescriptorClient::InitValues::ingressUbrShare,
             &AtmTrafficDescriptorClient::InitValues::userLabel, &AtmTrafficDescriptorClient::InitValues::nmaLabel> {};

template <>
inline constexpr bool isSentOnly<AtmTrafficDescriptorClient::InitValues> = true;

template <>
struct Operations<AtmTrafficDescriptorClient>
    : OperationList<AtmTrafficDescriptorClient, 0x4911029d, Operation<0, &AtmTrafficDescriptorClient::getUserLabel>,
                    Operation<1, &AtmTrafficDescriptorClient::setUserLabel>,
                    Operation<2, &AtmTrafficDescriptorClient::getNmaLabel>,
                    Operation<3, &AtmTrafficDescriptorClient::setNmaLabel>,
                    Operation<4, &AtmTrafficDescriptorClient::getServiceCat>,
                    Operation<5, &AtmTrafficDescriptorClient::getConformanceDefinition>,
                    Operation<6, &AtmTrafficDescriptorClient::getEgressPeakCellRateClp0_1>,
                    Operation<7, &AtmTrafficDescriptorClient::getEgressPeakCellRateClp0>,
                    Operation<8, &AtmTrafficDescriptorClient::getIngressPeakCellRateClp0_1>,
                    Operation<9, &AtmTrafficDescriptorClient::getIngressPeakCellRateClp0>,
                    Operation<10, &AtmTrafficDescriptorClient::getEgressMinDesiredCellRateClp0_1>,
                    Operation<11, &AtmTrafficDescriptorClient::getEgressMinDesiredCellRateClp0>,
                    Operation<12, &AtmTrafficDescriptorClient::getIngressMinDesiredCellRateClp0_1>,
                    Operation<13, &AtmTrafficDescriptorClient::getIngressMinDesiredCellRateClp0>,
                    Operation<14, &AtmTrafficDescriptorClient::getEgressClrClp0_1>,
                    Operation<15, &AtmTrafficDescriptorClient::getEgressClrClp0>,
                    Operation<16, &AtmTrafficDescriptorClient::getIngressClrClp0_1>,
                    Operation<17, &AtmTrafficDescriptorClient::getIngressClrClp0>,
                    Operation<18, &AtmTrafficDescriptorClient::getEgressCdvTolerancePcrClp0_1>,
                    Operation<19, &AtmTrafficDescriptorClient::getEgressCdvTolerancePcrClp0>,
                    Operation<20, &AtmTrafficDescriptorClient::getIngressCdvTolerancePcrClp0_1>,
                    Operation<21, &AtmTrafficDescriptorClient::getIngressCdvTolerancePcrClp0>,
                    Operation<22, &AtmTrafficDescriptorClient::getEgressUbrShare>,
                    Operation<23, &AtmTrafficDescriptorClient::getIngressUbrShare>,
                    Operation<24, &AtmTrafficDescriptorClient::getOldEgressMinDesiredCellRate>,
                    Operation<25, &AtmTrafficDescriptorClient::getOldIngressMinDesiredCellRate>,
                    Operation<26, &AtmTrafficDescriptorClient::setServiceCat>,
                    Operation<27, &AtmTrafficDescriptorClient::setConformanceDefinition>,
                    Operation<28, &AtmTrafficDescriptorClient::setEgressPeakCellRateClp0_1>,
                    Operation<29, &AtmTrafficDescriptorClient::setEgressPeakCellRateClp0>,
                    Operation<30, &AtmTrafficDescriptorClient::setIngressPeakCellRateClp0_1>,
                    Operation<31, &AtmTrafficDescriptorClient::setIngressPeakCellRateClp0>,
                    Operation<32, &AtmTrafficDescriptorClient::setEgressMinDesiredCellRateClp0_1>,
                    Operation<33, &AtmTrafficDescriptorClient::setEgressMinDesiredCellRateClp0>,
                    Operation<34, &AtmTrafficDescriptorClient::setIngressMinDesiredCellRateClp0_1>,
                    Operation<35, &AtmTrafficDescriptorClient::setIngressMinDesiredCellRateClp0>,
                    Operation<36, &AtmTrafficDescriptorClient::setEgressClrClp0_1>,
                    Operation<37, &AtmTrafficDescriptorClient::setEgressClrClp0>,
                    Operation<38, &AtmTrafficDescriptorClient::setIngressClrClp0_1>,
                    Operation<39, &AtmTrafficDescriptorClient::setIngressClrClp0>,
                    Operation<40, &AtmTrafficDescriptorClient::setEgressCdvTolerancePcrClp0_1>,
                    Operation<41, &AtmTrafficDescriptorClient::setEgressCdvTolerancePcrClp0>,
                    Operation<42, &AtmTrafficDescriptorClient::setIngressCdvTolerancePcrClp0_1>,
                    Operation<43, &AtmTrafficDescriptorClient::setIngressCdvTolerancePcrClp0>,
                    Operation<44, &AtmTrafficDescriptorClient::setEgressUbrShare>,
                    Operation<45, &AtmTrafficDescriptorClient::setIngressUbrShare>,
                    Operation<46, &AtmTrafficDescriptorClient::internalAddReference>,
                    Operation<47, &AtmTrafficDescriptorClient::internalReleaseReference>,
                    Operation<48, &AtmTrafficDescriptorClient::keepCurrentMdcr>,
                    Operation<49, &AtmTrafficDescriptorClient::isLike>> {};
