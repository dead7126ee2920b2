#pragma once
// The contents of the control panel's eleven rollouts, one function each.

void buildBasicAdjustmentRollout();
void buildCheckboxesRollout();
void buildStarSelectionRollout();
void buildStarPickedRollout();
void buildStarTextureRollout();
void buildImageRegistrationRollout();
void buildMovieControlRollout();
void buildOrreryRollout();
void buildStarVelocityRollout();
void buildExtrasolarPlanetRollout();
void buildScalableWimRollout();

// The selection sliders' labels, check boxes and ranges from the star parameters.
void initStarSelectionControls();
