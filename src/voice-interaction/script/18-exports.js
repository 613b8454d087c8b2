// What the runtime publishes as corvis.voiceinteraction.
exports = new VoiceInteractionHandler();
