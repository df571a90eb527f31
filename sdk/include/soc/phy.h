/*
 * MII management: registers of the ports' PHYs.
 */
#ifndef SOC_PHY_H
#define SOC_PHY_H

#include <bcm/error.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* PHY address of a chip-local port. */
uint8_t soc_phy_addr_of_port(int unit, int port);

/* One 16-bit register, 0 to 31, of the PHY at an address. 0; UNIT; PARAM; TIMEOUT: no such PHY. */
int soc_miim_read(int unit, uint8_t phy_address, uint8_t reg, uint16_t* data);
int soc_miim_write(int unit, uint8_t phy_address, uint8_t reg, uint16_t data);

#ifdef __cplusplus
}
#endif
#endif
